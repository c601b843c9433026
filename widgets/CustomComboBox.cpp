#include "widgets/CustomComboBox.h"

#include "widgets/CustomItemDelegate.h"

#include <QDebug>
#include <QPainter>
#include <QPainterPath>

namespace {

const char hoverProperty[] = "hover";

// Returns the image with the higher resolution on a high-DPI screen. Its size in device-independent pixels is
// the same.
QPixmap arrowImage(bool active, qreal devicePixelRatio)
{
    const QString name = active ? QStringLiteral(":/images/XLChose") : QStringLiteral(":/images/XL");
    return QPixmap(name + (devicePixelRatio > 1.0 ? QLatin1String("@2x.png") : QLatin1String(".png")));
}

} // namespace

CustomComboBox::CustomComboBox(QWidget *parent) : QComboBox(parent), m_listView(new QListView)
{
    setMouseTracking(true);
    m_listView->setFixedHeight(m_itemHeight);
    m_listView->setItemDelegate(new CustomItemDelegate(this));
    m_listView->setSpacing(0);
    setView(m_listView);
}

void CustomComboBox::showPopup()
{
    QComboBox::showPopup();
    m_popupVisible = true;
    qDebug() << "Dropdown is now visible";
}

void CustomComboBox::hidePopup()
{
    QComboBox::hidePopup();
    m_popupVisible = false;
    qDebug() << "Dropdown is now hidden";
}

void CustomComboBox::enterEvent(QEvent *event)
{
    setCursor(Qt::PointingHandCursor);
    setProperty(hoverProperty, true);
    update();
    QWidget::enterEvent(event);
}

void CustomComboBox::leaveEvent(QEvent *event)
{
    setProperty(hoverProperty, false);
    update();
    QWidget::leaveEvent(event);
}

void CustomComboBox::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QStyleOptionComboBox option;
    initStyleOption(&option);

    const QPen border(QColor(165, 172, 178), 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
    const QRect box = option.rect.adjusted(1, 1, -1, -1);
    painter.setPen(border);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(box, 1.0, 1.0, Qt::AbsoluteSize);

    painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.setFont(QFont(QStringLiteral("Arial"), 10));
    painter.drawText(option.rect.adjusted(5, 0, -30, 0), Qt::AlignLeft | Qt::AlignVCenter, currentText());

    const QPixmap arrow = arrowImage(m_popupVisible || property(hoverProperty).toBool(), devicePixelRatioF());
    const QSize size = (QSizeF(arrow.size()) / arrow.devicePixelRatio()).toSize();
    const QRect corner(width() + 1 - size.width(), height() + 1 - size.height(), size.width() - 2,
                       size.height() - 2);
    QPainterPath clip;
    clip.addRoundedRect(corner, 1.0, 1.0, Qt::AbsoluteSize);
    painter.setClipPath(clip, Qt::ReplaceClip);
    painter.drawPixmap(corner, arrow);

    // Intentional: still clipped to the arrow, so that only the arrow's part of the border is redrawn.
    painter.setPen(border);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box, 1.0, 1.0, Qt::AbsoluteSize);
}

void CustomComboBox::resizeEvent(QResizeEvent *event)
{
    QComboBox::resizeEvent(event);
}
