#include "app/window/MainWindowLowerPart.h"

#include "app/window/MainWindowTexts.h"
#include "app/window/NamedObjects.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStyleOptionButton>

using MainWindowTexts::translated;
using NamedObjects::makeLayout;
using NamedObjects::named;

namespace {

const char chineseStartButton[] =
    "QPushButton {    border: none;    background-image: url(:/images/Button.png);}"
    "QPushButton:hover {    background-image: url(:/images/IsButton.png);}"
    "QPushButton:pressed {    background-image: url(:/images/ClickButton.png);}";
const char englishStartButton[] =
    "QPushButton {    border: none;    background-image: url(:/images/ENButton.png);}"
    "QPushButton:hover {    background-image: url(:/images/ENIsButton.png);}"
    "QPushButton:pressed {    background-image: url(:/images/ENClickButton.png);}";
const char chooseFileButtonStyle[] =
    "QPushButton {    border-image: url(:/images/ChoseFile.png); /* 默认状态 */}"
    "QPushButton:hover {    border-image: url(:/images/IsChoseFile.png); /* 悬浮状态 */}"
    "QPushButton:pressed {    border-image: url(:/images/ChoseFileClick.png); /* 按下状态 */}";

QLabel *makeCaption(const TranslatableText &caption, const char *name)
{
    return named(new QLabel(translated(caption)), name);
}

QHBoxLayout *buildInfoRow(MainWindowWidgets &widgets)
{
    widgets.deviceModelLabel = makeCaption(MainWindowTexts::deviceModel, "deviceModelLabel");
    widgets.deviceModelLabel->setFixedWidth(150);
    widgets.serverVersionLabel = makeCaption(MainWindowTexts::serverVersion, "serverVersionLabel");
    widgets.serverVersionLabel->setFixedWidth(200);
    widgets.stateTitleLabel = makeCaption(MainWindowTexts::currentStatus, "stateTitleLabel");
    // The longest English titles need two lines: on one they would run under the log check box.
    widgets.stateTitleLabel->setWordWrap(true);
    widgets.stateTitleLabel->setMinimumWidth(255);
    auto *row = makeLayout<QHBoxLayout>("infoRow");
    row->setAlignment(Qt::AlignBottom);
    row->setContentsMargins(10, 0, 0, 15);
    row->addWidget(widgets.deviceModelLabel);
    row->addWidget(widgets.serverVersionLabel);
    row->addWidget(widgets.stateTitleLabel);
    return row;
}

QHBoxLayout *buildInfoAndLogRow(MainWindowWidgets &widgets)
{
    widgets.logBox = named(new QCheckBox(translated(MainWindowTexts::log)), "logBox");
    auto *logRow = makeLayout<QHBoxLayout>("logRow");
    logRow->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    logRow->setContentsMargins(0, 0, 10, 15);
    logRow->addWidget(widgets.logBox);

    auto *row = makeLayout<QHBoxLayout>("infoAndLogRow");
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(buildInfoRow(widgets));
    row->addStretch();
    row->addLayout(logRow);
    return row;
}

QHBoxLayout *buildFileRow(MainWindowWidgets &widgets)
{
    widgets.firmwareFileEdit = named(new QLineEdit, "firmwareFileEdit");
    widgets.firmwareFileEdit->setStyleSheet(QStringLiteral("background-color: white;"));
    widgets.firmwareFileEdit->setFixedSize(585, 27);
    // The field only shows the image's path: typing another one would not change the image.
    widgets.firmwareFileEdit->setReadOnly(true);
    widgets.firmwareFileEdit->hide();
    widgets.chooseFileButton = named(new QPushButton, "chooseFileButton");
    widgets.chooseFileButton->setFixedSize(30, 27);
    widgets.chooseFileButton->setStyleSheet(QString::fromUtf8(chooseFileButtonStyle));
    widgets.chooseFileButton->hide();
    auto *row = makeLayout<QHBoxLayout>("fileRow");
    row->setAlignment(Qt::AlignLeft);
    row->setContentsMargins(10, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(widgets.firmwareFileEdit);
    row->addSpacing(5);
    row->addWidget(widgets.chooseFileButton);
    return row;
}

/// A button that is drawn faded while it is disabled: its images have no disabled state of their own. A
/// button that lost the keyboard focus because it was disabled takes the focus back when it is enabled,
/// unless the user has moved the focus meanwhile.
class FadingButton : public QPushButton
{
protected:
    void focusOutEvent(QFocusEvent *event) override
    {
        m_lostFocusByDisabling = !isEnabled();
        QPushButton::focusOutEvent(event);
    }

    void changeEvent(QEvent *event) override
    {
        QPushButton::changeEvent(event);
        if (event->type() != QEvent::EnabledChange || !m_lostFocusByDisabling)
            return;
        if (!isEnabled()) {
            m_focusSuccessor = window()->focusWidget();
            return;
        }
        m_lostFocusByDisabling = false;
        if (m_focusSuccessor == window()->focusWidget())
            setFocus(Qt::OtherFocusReason);
    }

    void paintEvent(QPaintEvent *event) override
    {
        if (isEnabled()) {
            QPushButton::paintEvent(event);
            return;
        }
        QStyleOptionButton option;
        initStyleOption(&option);
        QPainter painter(this);
        painter.setOpacity(0.45);
        style()->drawControl(QStyle::CE_PushButton, &option, &painter, this);
    }

private:
    bool m_lostFocusByDisabling = false;
    QPointer<QWidget> m_focusSuccessor;
};

QHBoxLayout *buildStartButtonRow(bool chineseLocale, MainWindowWidgets &widgets)
{
    widgets.startButton = named(new FadingButton, "startButton");
    widgets.startButton->setContentsMargins(0, 0, 0, 0);
    widgets.startButton->setFixedSize(115, 55);
    widgets.startButton->setStyleSheet(
        QLatin1String(chineseLocale ? chineseStartButton : englishStartButton));
    auto *row = makeLayout<QHBoxLayout>("startButtonRow");
    row->setAlignment(Qt::AlignRight);
    row->setContentsMargins(0, 0, 10, 10);
    row->addWidget(widgets.startButton);
    return row;
}

} // namespace

QHBoxLayout *MainWindowLowerPart::buildProgressRow(MainWindowWidgets &widgets)
{
    widgets.progressBar = named(new QProgressBar, "progressBar");
    widgets.progressBar->setFixedWidth(780);
    widgets.progressBar->setRange(0, 100);
    widgets.progressBar->setValue(0);
    auto *row = makeLayout<QHBoxLayout>("progressRow");
    row->setAlignment(Qt::AlignCenter);
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 8);
    row->addWidget(widgets.progressBar);
    return row;
}

QHBoxLayout *MainWindowLowerPart::buildBottomRow(bool chineseLocale, MainWindowWidgets &widgets)
{
    auto *left = makeLayout<QVBoxLayout>("bottomLeftColumn");
    left->setSpacing(0);
    left->setContentsMargins(0, 0, 0, 0);
    left->addLayout(buildFileRow(widgets));
    left->addLayout(buildInfoAndLogRow(widgets));
    auto *row = makeLayout<QHBoxLayout>("bottomRow");
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(left);
    row->addLayout(buildStartButtonRow(chineseLocale, widgets));
    return row;
}
