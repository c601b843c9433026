#include "app/MainWindowLowerPart.h"

#include "app/MainWindowTexts.h"

#include <QCheckBox>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

using MainWindowTexts::shown;

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

QHBoxLayout *rowNamed(const char *name)
{
    auto *row = new QHBoxLayout;
    row->setObjectName(QLatin1String(name));
    return row;
}

QLabel *captionNamed(const BilingualText &caption, const char *name)
{
    auto *label = new QLabel(shown(caption));
    label->setObjectName(QLatin1String(name));
    return label;
}

QHBoxLayout *buildInfoRow(MainWindowWidgets &widgets)
{
    widgets.deviceModelLabel = captionNamed(MainWindowTexts::deviceModel, "deviceModelLabel");
    widgets.deviceModelLabel->setFixedWidth(150);
    widgets.serverVersionLabel = captionNamed(MainWindowTexts::serverVersion, "serverVersionLabel");
    widgets.serverVersionLabel->setFixedWidth(200);
    widgets.stateTitleLabel = captionNamed(MainWindowTexts::currentStatus, "stateTitleLabel");
    // The longest English titles take two lines; on one they would run under the log check box.
    widgets.stateTitleLabel->setWordWrap(true);
    widgets.stateTitleLabel->setMinimumWidth(255);
    QHBoxLayout *row = rowNamed("infoRow");
    row->setAlignment(Qt::AlignBottom);
    row->setContentsMargins(10, 0, 0, 15);
    row->addWidget(widgets.deviceModelLabel);
    row->addWidget(widgets.serverVersionLabel);
    row->addWidget(widgets.stateTitleLabel);
    return row;
}

QHBoxLayout *buildInfoAndLogRow(MainWindowWidgets &widgets)
{
    widgets.logBox = new QCheckBox(shown(MainWindowTexts::log));
    widgets.logBox->setObjectName(QStringLiteral("logBox"));
    QHBoxLayout *logRow = rowNamed("logRow");
    logRow->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    logRow->setContentsMargins(0, 0, 10, 15);
    logRow->addWidget(widgets.logBox);

    QHBoxLayout *row = rowNamed("infoAndLogRow");
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(buildInfoRow(widgets));
    row->addStretch();
    row->addLayout(logRow);
    return row;
}

QHBoxLayout *buildFileRow(MainWindowWidgets &widgets)
{
    widgets.firmwareFileEdit = new QLineEdit;
    widgets.firmwareFileEdit->setObjectName(QStringLiteral("firmwareFileEdit"));
    widgets.firmwareFileEdit->setStyleSheet(QStringLiteral("background-color: white;"));
    widgets.firmwareFileEdit->setFixedSize(585, 27);
    widgets.firmwareFileEdit->hide();
    widgets.chooseFileButton = new QPushButton;
    widgets.chooseFileButton->setObjectName(QStringLiteral("chooseFileButton"));
    widgets.chooseFileButton->setFixedSize(30, 27);
    widgets.chooseFileButton->setStyleSheet(QString::fromUtf8(chooseFileButtonStyle));
    widgets.chooseFileButton->hide();
    QHBoxLayout *row = rowNamed("fileRow");
    row->setAlignment(Qt::AlignLeft);
    row->setContentsMargins(10, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(widgets.firmwareFileEdit);
    row->addSpacing(5);
    row->addWidget(widgets.chooseFileButton);
    return row;
}

/// The button's images know no disabled state: without this, a button that is off looks ready.
class FadedWhileDisabled : public QObject
{
public:
    explicit FadedWhileDisabled(QWidget *widget)
        : QObject(widget),
          m_widget(widget),
          m_effect(new QGraphicsOpacityEffect(widget))
    {
        m_effect->setOpacity(0.45);
        m_effect->setEnabled(false);
        widget->setGraphicsEffect(m_effect);
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            m_effect->setEnabled(!m_widget->isEnabled());
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget *m_widget;
    QGraphicsOpacityEffect *m_effect;
};

QHBoxLayout *buildStartButtonRow(bool chineseLocale, MainWindowWidgets &widgets)
{
    widgets.startButton = new QPushButton;
    widgets.startButton->setObjectName(QStringLiteral("startButton"));
    widgets.startButton->setContentsMargins(0, 0, 0, 0);
    widgets.startButton->setFixedSize(115, 55);
    widgets.startButton->setStyleSheet(
        QLatin1String(chineseLocale ? chineseStartButton : englishStartButton));
    new FadedWhileDisabled(widgets.startButton);
    QHBoxLayout *row = rowNamed("startButtonRow");
    row->setAlignment(Qt::AlignRight);
    row->setContentsMargins(0, 0, 10, 10);
    row->addWidget(widgets.startButton);
    return row;
}

} // namespace

QHBoxLayout *MainWindowLowerPart::buildProgressRow(MainWindowWidgets &widgets)
{
    widgets.progressBar = new QProgressBar;
    widgets.progressBar->setObjectName(QStringLiteral("progressBar"));
    widgets.progressBar->setFixedWidth(780);
    widgets.progressBar->setRange(0, 100);
    widgets.progressBar->setValue(0);
    QHBoxLayout *row = rowNamed("progressRow");
    row->setAlignment(Qt::AlignCenter);
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 8);
    row->addWidget(widgets.progressBar);
    return row;
}

QHBoxLayout *MainWindowLowerPart::buildBottomRow(bool chineseLocale, MainWindowWidgets &widgets)
{
    auto *left = new QVBoxLayout;
    left->setObjectName(QStringLiteral("bottomLeftColumn"));
    left->setSpacing(0);
    left->setContentsMargins(0, 0, 0, 0);
    left->addLayout(buildFileRow(widgets));
    left->addLayout(buildInfoAndLogRow(widgets));
    QHBoxLayout *row = rowNamed("bottomRow");
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(left);
    row->addLayout(buildStartButtonRow(chineseLocale, widgets));
    return row;
}
