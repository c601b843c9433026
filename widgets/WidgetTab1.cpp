#include "widgets/WidgetTab1.h"

#include "widgets/LocalFileHost.h"

#include <QDebug>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace {

const QColor grey(154, 154, 154);
const QColor blue(45, 99, 167);

constexpr QRect body(15, 115, 178, 125);
constexpr qreal bodyRadius = 10.0;
constexpr QSize screenSize(145, 100);

// Intentional: the strip is not visible on the page.
constexpr QRect gestureStrip(709, 305, 51, 16);

} // namespace

WidgetTab1::WidgetTab1(QWidget *parent, LocalFileHost *host) : QWidget(parent), m_host(host) {}

void WidgetTab1::onSetPicJD(double value)
{
    JD = value;
}

void WidgetTab1::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton) {
        qDebug() << "Middle mouse button pressed!";
        qDebug() << "Local Position:" << event->pos();
        qDebug() << "Global Position:" << event->globalPos();
        if (gestureStrip.contains(event->pos())) {
            qDebug() << "open local File Model!";
            m_host->enterLocalFileMode();
        }
    }
    QWidget::mousePressEvent(event);
}

void WidgetTab1::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);

    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(grey);
    painter.drawRoundedRect(body, bodyRadius, bodyRadius);

    painter.setBrush(blue);
    const double k = body.height() / 100.0;
    qDebug() << "double(JD*k): " << k * JD;
    const QRect level(body.left(), body.top() + body.height() - static_cast<int>(k * JD), body.width(),
                      body.height());
    qDebug() << "checkrect:  " << level;
    QPainterPath outline;
    outline.addRoundedRect(body, bodyRadius, bodyRadius);
    QPainterPath fill;
    fill.addRect(level);
    painter.drawPath(outline.intersected(fill));

    painter.setBrush(Qt::white);
    painter.drawRect(QRect(body.topLeft() + QPoint(12, 12), screenSize));
    const int middle = body.top() + body.height() / 2;
    painter.drawEllipse(body.left() + 1 + (body.width() + screenSize.width()) / 2,
                        static_cast<int>(middle - 5.0), 10, 10);
}
