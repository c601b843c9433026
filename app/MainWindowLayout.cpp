#include "app/MainWindowLayout.h"

#include "app/MainWindowLowerPart.h"
#include "app/MainWindowPage.h"
#include "app/MainWindowTexts.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"

#include <QCheckBox>
#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

void MainWindowLayout::buildRest(QWidget *mainWidget, bool chineseLocale, const Callbacks &callbacks,
                                 MainWindowWidgets &widgets)
{
    MainWindowPage::buildContents(mainWidget, callbacks, widgets);
    QHBoxLayout *progressRow = MainWindowLowerPart::buildProgressRow(widgets);
    QHBoxLayout *bottomRow = MainWindowLowerPart::buildBottomRow(chineseLocale, widgets);

    auto *whole = new QVBoxLayout;
    whole->setObjectName(QStringLiteral("wholeLayout"));
    whole->setSpacing(0);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addLayout(widgets.tabRow);
    whole->addLayout(progressRow);
    whole->addLayout(bottomRow);
    mainWidget->setLayout(whole);
    mainWidget->setWindowTitle(QStringLiteral("Custom Tab Size Example"));
}

void MainWindowLayout::connectLogBox(const MainWindowWidgets &widgets, QWidget *logWindow)
{
    QObject::connect(widgets.logBox, &QCheckBox::stateChanged, logWindow, [logWindow](int state) {
        const bool checked = state == Qt::Checked;
        qDebug() << (checked ? "Checkbox is checked." : "Checkbox is unchecked.");
        logWindow->setVisible(checked);
    });
}

void MainWindowLayout::applyAutomaticMode(const MainWindowWidgets &widgets)
{
    // Both line frames, too: the divider would run across the notice's row and the picture.
    QWidget *const irrelevant[] = {widgets.startButton,        widgets.iapBox,      widgets.restartBox,
                                   widgets.partitionSelectBox, widgets.divider,     widgets.connectTypeLabel,
                                   widgets.partitionSeparator, widgets.writeTypeBox};
    for (QWidget *widget : irrelevant)
        widget->hide();
    // In the tab bar: hiding the tab in the tab widget would blank the page as well.
    widgets.tabWidget->tabBar()->setTabVisible(0, false);
    widgets.noticeRow->setContentsMargins(200, 50, 0, 0);
    widgets.noticeLabel->setFixedWidth(480);
    widgets.noticeLabel->setFixedHeight(250);
    widgets.noticeLabel->setText(MainWindowTexts::shown(MainWindowTexts::automaticNotice));
}
