#include "app/window/MainWindowAccess.h"

#include "app/window/MainWindowTexts.h"
#include "support/SpokenText.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"
#include "widgets/WidgetTab1.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>

#include <vector>

namespace {

QAccessibleInterface *makeWindow(const QString &className, QObject *object)
{
    static const QStringList windows{QStringLiteral("BackgroundWidget"), QStringLiteral("TextWindow"),
                                     QStringLiteral("IAPUpDate"), QStringLiteral("ChosefirmwareWidget")};
    auto *widget = qobject_cast<QWidget *>(object);
    return widget && windows.contains(className) ? new QAccessibleWidget(widget, QAccessible::Window)
                                                 : nullptr;
}

} // namespace

void MainWindowAccess::reportWindows()
{
    QAccessible::installFactory(makeWindow);
}

void MainWindowAccess::nameControls(bool chineseLocale, const MainWindowWidgets &widgets)
{
    widgets.startButton->setAccessibleName(chineseLocale ? QStringLiteral("开始升级")
                                                         : QStringLiteral("Start"));
    widgets.connectTypeLabel->setBuddy(widgets.writeTypeBox);
    widgets.writeTypeBox->setAccessibleName(spoken("Connection type", "连接方式"));
    widgets.progressBar->setAccessibleName(spoken("Update progress", "升级进度"));
    widgets.firmwareFileEdit->setAccessibleName(spoken("Firmware file", "固件文件"));
    widgets.chooseFileButton->setAccessibleName(spoken("Choose firmware file", "选择固件文件"));
    const QString page = MainWindowTexts::translated(MainWindowTexts::flashImage);
    widgets.tabWidget->setAccessibleName(page);
    widgets.tabWidget->tabBar()->setAccessibleName(page);
    widgets.flashingPage->setAccessibleName(page);
}

void MainWindowAccess::orderFocus(const MainWindowWidgets &widgets)
{
    std::vector<QWidget *> order{widgets.tabWidget->tabBar(), widgets.writeTypeBox,
                                 widgets.partitionSelectBox};
    order.insert(order.end(), widgets.partitionBoxes.begin(), widgets.partitionBoxes.end());
    order.insert(order.end(), {widgets.restartBox, widgets.iapBox, widgets.firmwareFileEdit,
                               widgets.chooseFileButton, widgets.logBox, widgets.startButton});
    for (std::size_t next = 1; next < order.size(); ++next)
        QWidget::setTabOrder(order.at(next - 1), order.at(next));
}
