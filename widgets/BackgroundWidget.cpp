#include "widgets/BackgroundWidget.h"

#include <QCloseEvent>
#include <QPainter>
#include <QStyleOption>

BackgroundWidget::BackgroundWidget(bool chineseLocale, QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("backgroundWidget"));
    setFixedSize(800, 490);
    setStyleSheet(QStringLiteral("background-color: rgb(240,240,240);"));
    setWindowTitle(chineseLocale ? QStringLiteral("固件升级") : QStringLiteral("Quillmarsh"));
}

void BackgroundWidget::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    // A subclass of QWidget has to paint its style sheet's background itself.
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void BackgroundWidget::closeEvent(QCloseEvent *event)
{
    if (!m_closeAllowed)
        emit sigCloseAsked();
    // A refused close would also delay the end of the user's session, so none is refused while the program
    // shuts down.
    event->setAccepted(m_closeAllowed);
}
