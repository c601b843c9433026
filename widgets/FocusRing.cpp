#include "widgets/FocusRing.h"

#include <QApplication>
#include <QDialog>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QPainter>

namespace {

/// A frame of our own, since the styles of the systems draw none around images. Screen readers skip a
/// QFocusFrame, and the mouse goes through it.
class RingFrame : public QFocusFrame
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, 2.0));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3.0, 3.0);
    }
};

bool usesFocus(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        return true;
    default:
        return false;
    }
}

bool isRinged(const QWidget *widget)
{
    if (!widget)
        return false;
    const QWidget *window = widget->window();
    return window->windowType() != Qt::Popup && !qobject_cast<const QDialog *>(window);
}

} // namespace

FocusRing::FocusRing()
{
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &FocusRing::follow);
}

FocusRing::~FocusRing()
{
    delete m_frame;
}

bool FocusRing::isAround(const QWidget *widget) const
{
    return m_frame && m_frame->widget() == widget;
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && usesFocus(static_cast<QKeyEvent *>(event)->key()))
        setKeyboardUsed(true);
    else if (event->type() == QEvent::MouseButtonPress)
        setKeyboardUsed(false);
    return QObject::eventFilter(watched, event);
}

void FocusRing::setKeyboardUsed(bool used)
{
    if (m_keyboardUsed == used)
        return;
    m_keyboardUsed = used;
    follow();
}

void FocusRing::follow()
{
    QWidget *focused = m_keyboardUsed ? QApplication::focusWidget() : nullptr;
    // A frame belongs to the window that it is drawn in, and may have gone with it.
    if (!m_frame && focused)
        m_frame = new RingFrame;
    if (m_frame)
        m_frame->setWidget(isRinged(focused) ? focused : nullptr);
}
