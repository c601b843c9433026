#include "app/window/MainWindowTexts.h"
#include "tests/app/TestMainWindow.h"
#include "tests/common/RecordedDebugStream.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"
#include "widgets/TextWindow.h"
#include "widgets/WidgetTab1.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSet>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace {

using Direction = QBoxLayout::Direction;

const char chineseStartButton[] =
    "QPushButton {    border: none;    background-image: url(:/images/Button.png);}QPushButton:hover {    "
    "background-image: url(:/images/IsButton.png);}QPushButton:pressed {    background-image: "
    "url(:/images/ClickButton.png);}";
const char englishStartButton[] =
    "QPushButton {    border: none;    background-image: url(:/images/ENButton.png);}QPushButton:hover {    "
    "background-image: url(:/images/ENIsButton.png);}QPushButton:pressed {    background-image: "
    "url(:/images/ENClickButton.png);}";
const char chooseFileButton[] =
    "QPushButton {    border-image: url(:/images/ChoseFile.png); /* 默认状态 */}QPushButton:hover {    "
    "border-image: url(:/images/IsChoseFile.png); /* 悬浮状态 */}QPushButton:pressed {    border-image: "
    "url(:/images/ChoseFileClick.png); /* 按下状态 */}";

constexpr int anySpacing = -1;

struct LayoutRow
{
    const char *name;
    Direction direction;
    int alignment;
    std::optional<QMargins> margins;
    int spacing;
    /// The names of widgets and layouts in order; "stretch" and "space:7" stand for stretches and spacings.
    QStringList items;
};

QStringList list(const char *items)
{
    return QString::fromUtf8(items).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

std::vector<LayoutRow> layoutTable()
{
    std::vector<LayoutRow> rows = {
        {"wholeLayout", Direction::TopToBottom, 0, QMargins(), 0, list("tabRow progressRow bottomRow")},
        {"tabRow", Direction::LeftToRight, 0xA4, QMargins(0, 5, 0, 0), anySpacing, list("tabWidget")},
        {"pageLayout", Direction::TopToBottom, 0, QMargins(), 0,
         list("upperPart deviceStateRow restartRow iapRow")},
        {"upperPart", Direction::LeftToRight, 0x20, QMargins(), 0,
         list("connectRow dividerRow noticeRow partitionColumn")},
        {"connectRow", Direction::LeftToRight, 0x20, QMargins(15, 15, 0, 0), 0,
         list("connectTypeLabel writeTypeBox")},
        {"dividerRow", Direction::LeftToRight, 0x20, QMargins(70, 50, 0, 0), anySpacing, list("divider")},
        {"noticeRow", Direction::LeftToRight, 0x84, QMargins(), anySpacing, list("noticeLabel")},
        {"partitionColumn", Direction::TopToBottom, 0x20, std::nullopt, 0,
         list("partitionSelectRow space:7 separatorRow partitionRow_spl partitionRow_env partitionRow_os "
              "partitionRow_rodata partitionRow_data")},
        {"partitionSelectRow", Direction::LeftToRight, 0x20, QMargins(170, 20, 0, 0), anySpacing,
         list("partitionSelectBox")},
        {"separatorRow", Direction::LeftToRight, 0x02, QMargins(0, 0, 20, 0), 0,
         list("stretch partitionSeparator")},
        {"deviceStateRow", Direction::LeftToRight, 0x02, QMargins(0, 0, 15, 0), anySpacing,
         list("statusLabel")},
        {"restartRow", Direction::LeftToRight, 0x41, QMargins(15, 0, 0, 15), 0, list("restartBox")},
        {"iapRow", Direction::LeftToRight, 0x41, QMargins(15, 0, 0, 15), 0, list("iapBox")},
        {"progressRow", Direction::LeftToRight, 0x84, QMargins(0, 0, 0, 8), 0, list("progressBar")},
        {"bottomRow", Direction::LeftToRight, 0, QMargins(), 0, list("bottomLeftColumn startButtonRow")},
        {"bottomLeftColumn", Direction::TopToBottom, 0, QMargins(), 0, list("fileRow infoAndLogRow")},
        {"fileRow", Direction::LeftToRight, 0x01, QMargins(10, 0, 0, 0), 0,
         list("firmwareFileEdit space:5 chooseFileButton")},
        {"infoAndLogRow", Direction::LeftToRight, 0, QMargins(), 0, list("infoRow stretch logRow")},
        {"infoRow", Direction::LeftToRight, 0x40, QMargins(10, 0, 0, 15), anySpacing,
         list("deviceModelLabel serverVersionLabel stateTitleLabel")},
        {"logRow", Direction::LeftToRight, 0x42, QMargins(0, 0, 10, 15), anySpacing, list("logBox")},
        {"startButtonRow", Direction::LeftToRight, 0x02, QMargins(0, 0, 10, 10), anySpacing,
         list("startButton")},
    };
    for (const char *row : {"partitionRow_spl", "partitionRow_env", "partitionRow_os", "partitionRow_rodata",
                            "partitionRow_data"}) {
        const QString box = QLatin1String("partitionBox_") + QLatin1String(row).mid(13);
        rows.push_back(
            {row, Direction::LeftToRight, 0x20, QMargins(170, 5, 0, 0), anySpacing, QStringList{box}});
    }
    return rows;
}

QString itemName(QLayoutItem *item)
{
    if (item->widget() != nullptr)
        return item->widget()->objectName();
    if (item->layout() != nullptr)
        return item->layout()->objectName();
    if (item->expandingDirections() != Qt::Orientations())
        return QStringLiteral("stretch");
    return QStringLiteral("space:%1").arg(qMax(item->sizeHint().width(), item->sizeHint().height()));
}

struct WidgetRow
{
    const char *name;
    const char *className;
    /// -1 where the size is free.
    QSize fixedSize;
    const char *styleSheet;
    const char *english;
    const char *chinese;
    bool shown = true;
    bool enabled = true;
    bool checked = false;
};

const WidgetRow widgetTable[] = {
    {"tabWidget", "CustomTabWidget", {780, 385}, "", "", ""},
    {"flashingPage", "WidgetTab1", {-1, -1}, "background-color: white;", "", ""},
    {"connectTypeLabel", "QLabel", {60, 27}, "", "ConnType:", "连接方式:"},
    {"writeTypeBox", "CustomComboBox", {61, 27}, "", "", ""},
    {"divider", "QFrame", {-1, 256}, "color: rgb(179,179,179);", "", ""},
    {"noticeLabel",
     "QLabel",
     {280, 100},
     "",
     "    Note:\n    Do not shake the USB cable or the device\n    during the firmware upgrade,\n"
     "    or disconnect the device.\n    Do not close this program during the\n    upgrade,\n"
     "    wait for the program to finish.",
     "    需知:\n    在升级固件过程中请勿晃动usb线或晃动设备，\n    或拔插设备。\n"
     "    升级过程中请勿关闭本程序，\n    等待程序运行完毕。"},
    {"partitionSelectBox", "QCheckBox", {-1, -1}, "", "Select flash", "选择分区烧写"},
    {"partitionSeparator", "QFrame", {160, -1}, "", "", ""},
    {"partitionBox_spl", "QCheckBox", {-1, -1}, "", "spl", "spl", false, false, true},
    {"partitionBox_env", "QCheckBox", {-1, -1}, "", "env", "env", false, false, true},
    {"partitionBox_os", "QCheckBox", {-1, -1}, "", "os", "os", false, false, true},
    {"partitionBox_rodata", "QCheckBox", {-1, -1}, "", "rodata", "rodata", false, false, true},
    {"partitionBox_data", "QCheckBox", {-1, -1}, "", "data", "data", false, false, true},
    {"statusLabel", "QLabel", {-1, -1}, "color: blue;", "Device not detected", "未发现设备"},
    {"restartBox",
     "QCheckBox",
     {-1, -1},
     "",
     "Restart the device after a successful flash",
     "烧写成功后重启设备"},
    {"iapBox", "QCheckBox", {-1, -1}, "", "IAPSet", "IAPSet"},
    {"progressBar", "QProgressBar", {780, -1}, "", "0%", "0%"},
    {"firmwareFileEdit", "QLineEdit", {585, 27}, "background-color: white;", "", "", false},
    {"chooseFileButton", "QPushButton", {30, 27}, chooseFileButton, "", "", false},
    {"deviceModelLabel", "QLabel", {150, -1}, "", "DeviceModel: ", "设备型号: "},
    {"serverVersionLabel", "QLabel", {200, -1}, "", "ServerFirVer: ", "服务器固件版本号: "},
    {"stateTitleLabel", "QLabel", {-1, -1}, "", "CurrentStatus: ", "当前状态: "},
    {"logBox", "QCheckBox", {-1, -1}, "", "Log", "日志"},
    {"startButton", "QPushButton", {115, 55}, nullptr, "", ""},
};

void expectFixed(const QWidget *widget, const QSize &size)
{
    if (size.width() >= 0) {
        EXPECT_EQ(widget->minimumWidth(), size.width());
        EXPECT_EQ(widget->maximumWidth(), size.width());
    } else {
        EXPECT_EQ(widget->maximumWidth(), QWIDGETSIZE_MAX);
    }
    if (size.height() >= 0) {
        EXPECT_EQ(widget->minimumHeight(), size.height());
        EXPECT_EQ(widget->maximumHeight(), size.height());
    } else {
        EXPECT_EQ(widget->maximumHeight(), QWIDGETSIZE_MAX);
    }
}

TestMainWindow::Options english()
{
    return {};
}

TestMainWindow::Options chinese()
{
    TestMainWindow::Options options;
    options.language = QStringLiteral("zh_CN");
    options.chineseLocale = true;
    return options;
}

TestMainWindow::Options withWriteTypes(bool usb, bool hid)
{
    TestMainWindow::Options options;
    options.usb = usb;
    options.hid = hid;
    return options;
}

TestMainWindow::Options automatic(TestMainWindow::Options options)
{
    options.automatic = true;
    return options;
}

QStringList itemsOf(const QComboBox *box)
{
    QStringList items;
    for (int index = 0; index < box->count(); ++index) {
        EXPECT_TRUE(box->itemIcon(index).isNull());
        EXPECT_FALSE(box->itemData(index).isValid());
        items << box->itemText(index);
    }
    return items;
}

TEST(MainWindowLayoutTest, EveryLayoutHasItsDirectionAlignmentMarginsSpacingAndItems)
{
    const TestMainWindow window(english());
    const std::vector<LayoutRow> table = layoutTable();
    for (const LayoutRow &row : table) {
        SCOPED_TRACE(row.name);
        const auto *layout = window.mainWidget->findChild<QBoxLayout *>(QLatin1String(row.name));
        ASSERT_NE(layout, nullptr);
        EXPECT_EQ(layout->direction(), row.direction);
        EXPECT_EQ(static_cast<int>(layout->alignment()), row.alignment);
        if (row.margins) {
            EXPECT_EQ(layout->contentsMargins(), *row.margins);
        }
        if (row.spacing != anySpacing) {
            EXPECT_EQ(layout->spacing(), row.spacing);
        }
        QStringList items;
        for (int index = 0; index < layout->count(); ++index)
            items << itemName(layout->itemAt(index));
        EXPECT_EQ(items, row.items) << items.join(QLatin1Char(' ')).toStdString();
    }
    const int named = static_cast<int>(
        window.mainWidget->findChildren<QBoxLayout *>(QRegularExpression(QStringLiteral("^(?!qt_).+")))
            .size());
    EXPECT_EQ(named, static_cast<int>(table.size())) << "a layout that the table does not know";
}

TEST(MainWindowLayoutTest, EveryWidgetHasItsClassSizeStyleSheetTextAndInitialState)
{
    for (const bool isChinese : {false, true}) {
        const TestMainWindow window(isChinese ? chinese() : english());
        for (const WidgetRow &row : widgetTable) {
            SCOPED_TRACE(testing::Message() << row.name << (isChinese ? ", Chinese" : ", English"));
            auto *widget = window.mainWidget->findChild<QWidget *>(QLatin1String(row.name));
            ASSERT_NE(widget, nullptr);
            EXPECT_STREQ(widget->metaObject()->className(), row.className);
            expectFixed(widget, row.fixedSize);
            const char *button = isChinese ? chineseStartButton : englishStartButton;
            EXPECT_EQ(widget->styleSheet(),
                      QString::fromUtf8(row.styleSheet != nullptr ? row.styleSheet : button));
            const QString text = QString::fromUtf8(isChinese ? row.chinese : row.english);
            EXPECT_EQ(widget->property("text").toString(), text);
            EXPECT_EQ(widget->isVisibleTo(window.mainWidget), row.shown);
            EXPECT_EQ(widget->isEnabled(), row.enabled);
            EXPECT_EQ(widget->property("checked").toBool(), row.checked);
        }
    }
}

TEST(MainWindowLayoutTest, EveryWidgetHasAnObjectNameOfItsOwn)
{
    const TestMainWindow window(english());
    QSet<QString> names;
    for (const QWidget *widget : window.mainWidget->findChildren<QWidget *>()) {
        // Qt names the child widgets of its own widgets.
        const QString name = widget->objectName();
        if (name.isEmpty()) {
            const QByteArray type = widget->metaObject()->className();
            EXPECT_TRUE(type.startsWith("QComboBoxPrivate") || type == "QScrollBar" || type == "QToolButton")
                << type.constData() << " in " << widget->parentWidget()->objectName().toStdString();
        } else if (!name.startsWith(QStringLiteral("qt_"))) {
            EXPECT_FALSE(names.contains(name)) << name.toStdString();
            names << name;
        }
    }
    for (const WidgetRow &row : widgetTable)
        EXPECT_TRUE(names.contains(QLatin1String(row.name))) << row.name;
}

TEST(MainWindowLayoutTest, TheMainWidgetIsFixedAndKeepsItsOddTitle)
{
    const TestMainWindow window(english());
    expectFixed(window.mainWidget, QSize(800, 490));
    EXPECT_EQ(window.mainWidget->windowTitle(), QStringLiteral("Custom Tab Size Example"));
}

TEST(MainWindowLayoutTest, TheTabHasItsFixedSizeAndText)
{
    for (const bool isChinese : {false, true}) {
        TestMainWindow window(isChinese ? chinese() : english());
        window.show();
        const QTabBar *bar = window.widgets.tabWidget->tabBar();
        EXPECT_STREQ(bar->metaObject()->className(), "CustomTabBar");
        EXPECT_EQ(bar->count(), 1);
        EXPECT_EQ(bar->tabRect(0).size(), QSize(112, 32));
        EXPECT_EQ(bar->tabText(0), isChinese ? QStringLiteral("烧写镜像") : QStringLiteral("FlashTheImage"));
        EXPECT_EQ(window.widgets.tabWidget->widget(0), window.widgets.flashingPage);
        EXPECT_EQ(window.widgets.tabWidget->contentsMargins(), QMargins());
        EXPECT_EQ(window.widgets.flashingPage->contentsMargins(), QMargins());
    }
}

TEST(MainWindowLayoutTest, TheFramesHaveTheirShapesAndShadows)
{
    const TestMainWindow window(english());
    EXPECT_EQ(window.widgets.divider->frameShape(), QFrame::VLine);
    EXPECT_EQ(window.widgets.divider->frameShadow(), QFrame::Plain);
    EXPECT_EQ(window.widgets.divider->lineWidth(), 1);
    EXPECT_EQ(window.widgets.partitionSeparator->frameShape(), QFrame::HLine);
    EXPECT_EQ(window.widgets.partitionSeparator->frameShadow(), QFrame::Sunken);
}

TEST(MainWindowLayoutTest, TheProgressBarRunsFromZeroToAHundred)
{
    const TestMainWindow window(english());
    EXPECT_EQ(window.widgets.progressBar->minimum(), 0);
    EXPECT_EQ(window.widgets.progressBar->maximum(), 100);
    EXPECT_EQ(window.widgets.progressBar->value(), 0);
}

TEST(MainWindowLayoutTest, TheStateTitleWrapsAndHasAMinimumWidth)
{
    const TestMainWindow window(english());
    EXPECT_TRUE(window.widgets.stateTitleLabel->wordWrap());
    EXPECT_EQ(window.widgets.stateTitleLabel->minimumWidth(), 255);
}

TEST(MainWindowLayoutTest, WithBothWriteTypesAllowedUsbIsListedBeforeHid)
{
    const TestMainWindow window(withWriteTypes(true, true));
    EXPECT_EQ(itemsOf(window.widgets.writeTypeBox), list("USB HID"));
    EXPECT_EQ(window.widgets.writeTypeBox->currentText(), QStringLiteral("USB"));
    EXPECT_EQ(window.widgets.writeTypeBox->itemHeight(), 52);
    EXPECT_EQ(window.widgets.writeTypeBox->listView()->height(), 52);
}

TEST(MainWindowLayoutTest, WithOneWriteTypeOrNoneThereIsOneItem)
{
    const TestMainWindow none(withWriteTypes(false, false));
    EXPECT_EQ(itemsOf(none.widgets.writeTypeBox), list("USB"));
    const TestMainWindow usb(withWriteTypes(true, false));
    EXPECT_EQ(itemsOf(usb.widgets.writeTypeBox), list("USB"));
    const TestMainWindow hid(withWriteTypes(false, true));
    EXPECT_EQ(itemsOf(hid.widgets.writeTypeBox), list("HID"));
    EXPECT_EQ(hid.widgets.writeTypeBox->itemHeight(), 26);
    EXPECT_EQ(hid.widgets.writeTypeBox->listView()->height(), 26);
}

TEST(MainWindowLayoutTest, OutsideChinaTheStartButtonUsesTheEnglishImagesEvenWithChineseTexts)
{
    TestMainWindow::Options options = chinese();
    options.chineseLocale = false;
    const TestMainWindow window(options);
    EXPECT_EQ(window.widgets.startButton->styleSheet(), QLatin1String(englishStartButton));
    EXPECT_EQ(window.widgets.logBox->text(), QStringLiteral("日志"));
}

TEST(MainWindowLayoutTest, InChinaTheStartButtonUsesTheChineseImagesEvenWithEnglishTexts)
{
    TestMainWindow::Options options = english();
    options.chineseLocale = true;
    const TestMainWindow window(options);
    EXPECT_EQ(window.widgets.startButton->styleSheet(), QLatin1String(chineseStartButton));
    EXPECT_EQ(window.widgets.logBox->text(), QStringLiteral("Log"));
}

TEST(MainWindowLayoutTest, TheStartButtonIsFadedWhileItIsDisabled)
{
    TestMainWindow window(english());
    window.show();
    QApplication::processEvents();
    QPushButton *button = window.widgets.startButton;
    const auto background = [&] {
        return window.background.grab().toImage().pixelColor(
            button->mapTo(&window.background, QPoint(15, 15)));
    };
    EXPECT_EQ(background(), QColor(45, 99, 167));
    button->setEnabled(false);
    EXPECT_GT(background().lightness(), QColor(45, 99, 167).lightness() + 40);
    button->setEnabled(true);
    EXPECT_EQ(background(), QColor(45, 99, 167));
}

TEST(MainWindowLayoutTest, TickingThePartitionBoxShowsTheFiveStillDisabledAndUntickingHidesThem)
{
    TestMainWindow window(english());
    window.show();
    const RecordedDebugStream debug;
    window.widgets.partitionSelectBox->setChecked(true);
    EXPECT_EQ(debug.count(QStringLiteral("Checkbox is checked.")), 1);
    for (const QCheckBox *box : window.widgets.partitionBoxes) {
        EXPECT_TRUE(box->isVisible());
        EXPECT_FALSE(box->isEnabled());
        EXPECT_TRUE(box->isChecked());
    }
    window.widgets.partitionSelectBox->setChecked(false);
    EXPECT_EQ(debug.count(QStringLiteral("Checkbox is unchecked.")), 1);
    for (const QCheckBox *box : window.widgets.partitionBoxes)
        EXPECT_FALSE(box->isVisible());
    window.widgets.partitionSelectBox->setCheckState(Qt::PartiallyChecked);
    EXPECT_FALSE(window.widgets.partitionBoxes[0]->isVisible());
}

TEST(MainWindowLayoutTest, TheIapBoxReportsItsState)
{
    TestMainWindow window(english());
    window.widgets.iapBox->setChecked(true);
    window.widgets.iapBox->setChecked(false);
    window.widgets.iapBox->setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(window.iapStates, (std::vector<int>{2, 0, 1}));
}

TEST(MainWindowLayoutTest, TheLogBoxShowsAndHidesTheLogWindow)
{
    TestMainWindow window(english());
    TextWindow log;
    MainWindowLayout::connectLogBox(window.widgets, &log);
    const RecordedDebugStream debug;
    window.widgets.logBox->setChecked(true);
    EXPECT_TRUE(log.isVisible());
    window.widgets.logBox->setChecked(false);
    EXPECT_FALSE(log.isVisible());
    const QStringList expected{QStringLiteral("Checkbox is checked."),
                               QStringLiteral("Checkbox is unchecked.")};
    EXPECT_EQ(debug.lines(), expected);
}

TEST(MainWindowLayoutTest, TheGestureReachesThePageThroughTheWidgetsOnIt)
{
    TestMainWindow window(english());
    window.show();
    for (int y = 305; y <= 320; y += 5) {
        for (int x = 709; x <= 759; x += 10) {
            const QPoint onPage(x, y);
            QWidget *hit = window.widgets.flashingPage->childAt(onPage);
            QWidget *target = hit != nullptr ? hit : window.widgets.flashingPage;
            const int before = window.localFileModeEntered;
            QTest::mouseClick(window.background.windowHandle(), Qt::MiddleButton, Qt::NoModifier,
                              window.widgets.flashingPage->mapTo(&window.background, onPage));
            EXPECT_EQ(window.localFileModeEntered, before + 1)
                << x << ", " << y << " on " << target->objectName().toStdString();
        }
    }
    EXPECT_TRUE(window.widgets.firmwareFileEdit->isVisible());
    EXPECT_TRUE(window.widgets.chooseFileButton->isVisible());
}

TEST(MainWindowLayoutTest, AutomaticModesHideTheControlsAndBothLineFrames)
{
    TestMainWindow window(automatic(english()));
    window.show();
    const QStringList hidden = list("startButton iapBox restartBox partitionSelectBox connectTypeLabel "
                                    "writeTypeBox divider partitionSeparator partitionBox_spl "
                                    "partitionBox_data firmwareFileEdit chooseFileButton");
    for (const QString &name : hidden)
        EXPECT_FALSE(window.mainWidget->findChild<QWidget *>(name)->isVisible()) << name.toStdString();
    for (const QString &name : list("flashingPage noticeLabel statusLabel progressBar deviceModelLabel "
                                    "serverVersionLabel stateTitleLabel logBox"))
        EXPECT_TRUE(window.mainWidget->findChild<QWidget *>(name)->isVisible()) << name.toStdString();
}

TEST(MainWindowLayoutTest, AutomaticModesHideTheTabButNotItsPage)
{
    TestMainWindow window(automatic(english()));
    window.show();
    EXPECT_FALSE(window.widgets.tabWidget->tabBar()->isTabVisible(0));
    EXPECT_TRUE(window.widgets.flashingPage->isVisible());
    const QImage picture = window.widgets.flashingPage->grab().toImage();
    EXPECT_EQ(picture.pixelColor(20, 177), QColor(154, 154, 154));
}

TEST(MainWindowLayoutTest, AutomaticModesShowTheirNotice)
{
    for (const bool isChinese : {false, true}) {
        const TestMainWindow window(automatic(isChinese ? chinese() : english()));
        expectFixed(window.widgets.noticeLabel, QSize(480, 250));
        EXPECT_EQ(window.widgets.noticeRow->contentsMargins(), QMargins(200, 50, 0, 0));
        const QString notice = window.widgets.noticeLabel->text();
        EXPECT_TRUE(notice.startsWith(isChinese ? QStringLiteral("    温馨提示:\n\n")
                                                : QStringLiteral("    Warm Tips:\n\n")));
        EXPECT_EQ(notice.count(QLatin1Char('\n')) + 1, isChinese ? 13 : 16);
    }
}

TEST(MainWindowLayoutTest, TheNoticesFallbacksAreTheChineseTablesTexts)
{
    const LanguageUtilities noTables(QStringLiteral("/nowhere"));
    const LanguageUtilities tables;
    for (const TranslatableText &notice : {MainWindowTexts::notice, MainWindowTexts::automaticNotice}) {
        EXPECT_EQ(noTables.lookup(notice),
                  tables.lookup(QLatin1String(notice.key), QString(), QStringLiteral("zh_CN")));
    }
    EXPECT_EQ(noTables.lookup(MainWindowTexts::automaticNotice).toUtf8().size(), 497);
}

TEST(MainWindowLookTest, TheProgramFontIsSizedInPixels)
{
    MainWindowLook::applyProgramFont(false);
    EXPECT_EQ(QApplication::font().pixelSize(), 11);
    MainWindowLook::applyProgramFont(true);
    EXPECT_EQ(QApplication::font().pixelSize(), 12);
}

TEST(MainWindowLookTest, TheProgramHasAnIconInEverySize)
{
    MainWindowLook::applyProgramIcon();
    EXPECT_EQ(QApplication::windowIcon().availableSizes().size(), 7);
}

} // namespace
