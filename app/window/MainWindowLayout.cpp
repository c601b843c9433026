#include "app/window/MainWindowLayout.h"

#include "app/window/MainWindowAccess.h"
#include "app/window/MainWindowLowerPart.h"
#include "app/window/MainWindowPage.h"
#include "app/window/MainWindowTexts.h"
#include "app/window/NamedObjects.h"
#include "devices/ControlledDeviceList.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"
#include "widgets/WidgetTab1.h"

#include <QCheckBox>
#include <QDebug>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

using MainWindowTexts::translated;
using NamedObjects::makeLayout;
using NamedObjects::named;

void MainWindowLayout::buildFlashingPage(QWidget *mainWidget, LocalFileHost *host, MainWindowWidgets &widgets)
{
    mainWidget->setFixedSize(800, 490);
    widgets.tabWidget = named(new CustomTabWidget(mainWidget), "tabWidget");
    widgets.tabWidget->tabBar()->setObjectName(QStringLiteral("tabBar"));
    widgets.tabWidget->setFixedSize(780, 385);
    widgets.tabWidget->setContentsMargins(0, 0, 0, 0);

    widgets.tabRow = makeLayout<QHBoxLayout>("tabRow");
    // Both fixed sizes must be set before this, so that the margin is 5.
    const int topMargin = mainWidget->height() - widgets.tabWidget->height() - 100;
    widgets.tabRow->setContentsMargins(0, topMargin, 0, 0);
    widgets.tabRow->setAlignment(Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter);
    widgets.tabRow->addWidget(widgets.tabWidget);

    widgets.flashingPage = named(new WidgetTab1(nullptr, host), "flashingPage");
    widgets.flashingPage->setContentsMargins(0, 0, 0, 0);
    widgets.flashingPage->setStyleSheet(QStringLiteral("background-color: white;"));
    widgets.tabWidget->addTab(widgets.flashingPage, translated(MainWindowTexts::flashImage));

    widgets.connectTypeLabel =
        named(new QLabel(translated(MainWindowTexts::connectType), mainWidget), "connectTypeLabel");
    widgets.connectTypeLabel->setFixedSize(60, 27);
}

void MainWindowLayout::buildWriteTypeBox(QWidget *mainWidget, bool usbAllowed, bool hidAllowed,
                                         MainWindowWidgets &widgets)
{
    auto *box = named(new CustomComboBox(mainWidget), "writeTypeBox");
    box->listView()->setObjectName(QStringLiteral("writeTypeList"));
    box->setFixedSize(61, 27);
    box->addItems(ControlledDeviceList::writeTypeItems({usbAllowed, hidAllowed}));
    if (box->count() > 1) {
        box->setItemHeight(52);
        box->listView()->setFixedHeight(52);
    }
    widgets.writeTypeBox = box;
}

void MainWindowLayout::buildRest(QWidget *mainWidget, bool chineseLocale, const Callbacks &callbacks,
                                 MainWindowWidgets &widgets)
{
    MainWindowPage::buildContents(mainWidget, callbacks, widgets);
    QHBoxLayout *progressRow = MainWindowLowerPart::buildProgressRow(widgets);
    QHBoxLayout *bottomRow = MainWindowLowerPart::buildBottomRow(chineseLocale, widgets);

    auto *whole = makeLayout<QVBoxLayout>("wholeLayout");
    whole->setSpacing(0);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addLayout(widgets.tabRow);
    whole->addLayout(progressRow);
    whole->addLayout(bottomRow);
    mainWidget->setLayout(whole);
    mainWidget->setWindowTitle(QStringLiteral("Custom Tab Size Example"));
    MainWindowAccess::nameControls(chineseLocale, widgets);
    MainWindowAccess::orderFocus(widgets);
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
    // Hide the two line frames as well: the divider would cross the notice and the picture.
    QWidget *const irrelevant[] = {widgets.startButton,        widgets.iapBox,      widgets.restartBox,
                                   widgets.partitionSelectBox, widgets.divider,     widgets.connectTypeLabel,
                                   widgets.partitionSeparator, widgets.writeTypeBox};
    for (QWidget *widget : irrelevant)
        widget->hide();
    // Hide it in the tab bar: QTabWidget::setTabVisible() would blank the page as well.
    widgets.tabWidget->tabBar()->setTabVisible(0, false);
    widgets.noticeRow->setContentsMargins(200, 50, 0, 0);
    widgets.noticeLabel->setFixedWidth(480);
    widgets.noticeLabel->setFixedHeight(250);
    widgets.noticeLabel->setText(translated(MainWindowTexts::automaticNotice));
}
