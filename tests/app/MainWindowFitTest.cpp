#include "app/window/MainWindowTexts.h"
#include "tests/app/TestMainWindow.h"
#include "widgets/CustomComboBox.h"
#include "widgets/CustomTabWidget.h"
#include "widgets/WidgetTab1.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QFontMetrics>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProgressBar>
#include <QTabBar>

#include <gtest/gtest.h>

#include <vector>

// Checks on the real window, with the real fonts, that every text fits into its widget. ctest runs these
// tests once for each scale of the screen (QT_SCALE_FACTOR).

namespace {

using Options = TestMainWindow::Options;

Options inLanguage(bool chinese, bool automatic)
{
    Options options;
    options.language = chinese ? QStringLiteral("zh_CN") : QStringLiteral("en");
    options.chineseLocale = chinese;
    options.hid = true;
    options.automatic = automatic;
    return options;
}

/// Returns every text that the status title or the connection status can show in `language`.
QStringList textsOf(const QString &language, bool titles)
{
    QFile file(QStringLiteral(":/JsonLanguage/%1.json").arg(language));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
    QStringList texts;
    for (const QString &key : table.keys()) {
        if (key.startsWith(QStringLiteral("Current Status")) == titles &&
            !key.startsWith(QStringLiteral("MustKnow")))
            texts << table.value(key).toString();
    }
    if (titles)
        texts << table.value(QStringLiteral("Current Status: Downloading...")).toString() +
                     QStringLiteral("1023.99 / 1023.99 MB/S");
    else
        texts = QStringList{table.value(QStringLiteral("Device not detected")).toString(),
                            table.value(QStringLiteral("Device Detected")).toString(),
                            table.value(QStringLiteral("IAP Device Detected")).toString(),
                            table.value(QStringLiteral("FindBootloader")).toString(),
                            table.value(QStringLiteral("Bootloader>1")).toString()};
    return texts;
}

QSize neededBy(const QLabel *label)
{
    const QFontMetrics metrics(label->font());
    if (label->wordWrap()) {
        const QRect room(0, 0, label->contentsRect().width(), 10000);
        return metrics.boundingRect(room, Qt::TextWordWrap, label->text()).size();
    }
    return metrics.size(0, label->text());
}

void expectTextsFit(const TestMainWindow &window)
{
    for (const QLabel *label : window.mainWidget->findChildren<QLabel *>()) {
        if (!label->isVisible())
            continue;
        const QSize needed = neededBy(label);
        EXPECT_LE(needed.width(), label->contentsRect().width()) << label->text().toStdString();
        EXPECT_LE(needed.height(), label->contentsRect().height()) << label->text().toStdString();
    }
    for (const QCheckBox *box : window.mainWidget->findChildren<QCheckBox *>()) {
        if (!box->isVisible())
            continue;
        EXPECT_LE(box->sizeHint().width(), box->width()) << box->text().toStdString();
        EXPECT_LE(box->sizeHint().height(), box->height()) << box->text().toStdString();
    }
    const QTabBar *bar = window.widgets.tabWidget->tabBar();
    if (bar->isTabVisible(0)) {
        EXPECT_LE(bar->fontMetrics().horizontalAdvance(bar->tabText(0)) + 16, bar->tabRect(0).width());
    }
    EXPECT_GE(window.widgets.progressBar->height(), window.widgets.progressBar->fontMetrics().height());
    if (window.widgets.writeTypeBox->isVisible()) {
        const QFontMetrics metrics(QFont(QStringLiteral("Arial"), 10));
        for (int index = 0; index < window.widgets.writeTypeBox->count(); ++index) {
            const QString text = window.widgets.writeTypeBox->itemText(index);
            // The box has to draw in this font and to clip the text thirty pixels before its right
            // edge. "USB" may lose only the last two columns of its B, which are faint.
            EXPECT_LE(5 + metrics.tightBoundingRect(text).right(), 61 - 30 + 1) << text.toStdString();
        }
    }
}

struct VisibleItem
{
    QString name;
    QRect rect;
};

/// Returns what is visible in the window, in the main widget's coordinates.
std::vector<VisibleItem> visibleItems(const TestMainWindow &window)
{
    std::vector<VisibleItem> result;
    for (const char *name : {"connectTypeLabel",
                             "writeTypeBox",
                             "noticeLabel",
                             "partitionSelectBox",
                             "partitionSeparator",
                             "partitionBox_spl",
                             "partitionBox_env",
                             "partitionBox_os",
                             "partitionBox_rodata",
                             "partitionBox_data",
                             "statusLabel",
                             "restartBox",
                             "iapBox",
                             "progressBar",
                             "firmwareFileEdit",
                             "chooseFileButton",
                             "deviceModelLabel",
                             "serverVersionLabel",
                             "stateTitleLabel",
                             "logBox",
                             "startButton",
                             "tabBar"}) {
        const auto *widget = window.mainWidget->findChild<QWidget *>(QLatin1String(name));
        if (widget->isVisible() && !widget->size().isEmpty())
            result.push_back(
                {widget->objectName(), {widget->mapTo(window.mainWidget, QPoint()), widget->size()}});
    }
    const QFrame *divider = window.widgets.divider;
    if (divider->isVisible()) {
        const QPoint origin = divider->mapTo(window.mainWidget, QPoint());
        result.push_back({divider->objectName(), divider->frameRect().translated(origin)});
    }
    const QPoint page = window.widgets.flashingPage->mapTo(window.mainWidget, QPoint());
    result.push_back({QStringLiteral("the picture"), QRect(15, 115, 178, 125).translated(page)});
    return result;
}

void expectNothingOverlaps(const TestMainWindow &window)
{
    const std::vector<VisibleItem> all = visibleItems(window);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(window.mainWidget->rect().contains(all[i].rect)) << all[i].name.toStdString();
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            EXPECT_FALSE(all[i].rect.intersects(all[j].rect))
                << all[i].name.toStdString() << " and " << all[j].name.toStdString();
        }
    }
}

/// Shows every status title and connection status in turn and checks the window each time.
void expectEverythingFits(TestMainWindow &window, const QString &language)
{
    window.show();
    window.widgets.deviceModelLabel->setText(window.widgets.deviceModelLabel->text() +
                                             QStringLiteral("DevMdm"));
    for (const QString &status : textsOf(language, false)) {
        window.widgets.statusLabel->setText(status);
        QApplication::processEvents();
        expectTextsFit(window);
        expectNothingOverlaps(window);
    }
    for (const QString &title : textsOf(language, true)) {
        SCOPED_TRACE(title.toStdString());
        window.widgets.stateTitleLabel->setText(title);
        QApplication::processEvents();
        expectTextsFit(window);
        expectNothingOverlaps(window);
    }
}

template <typename Check>
void inBothLanguages(bool automatic, Check check)
{
    for (const bool chinese : {false, true}) {
        SCOPED_TRACE(chinese ? "Chinese" : "English");
        const Options options = inLanguage(chinese, automatic);
        TestMainWindow window(options);
        check(window);
        expectEverythingFits(window, options.language);
    }
}

TEST(MainWindowFitTest, TheScreenScaleIsTheRequestedOne)
{
    TestMainWindow window(inLanguage(false, false));
    window.show();
    bool given = false;
    const double asked = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&given);
    EXPECT_DOUBLE_EQ(window.mainWidget->devicePixelRatioF(), given ? asked : 1.0);
}

TEST(MainWindowFitTest, InNormalModeNoTextIsClippedAndNothingOverlaps)
{
    inBothLanguages(false, [](TestMainWindow &) {});
}

TEST(MainWindowFitTest, InTheAutomaticModesNoTextIsClippedAndNothingOverlaps)
{
    inBothLanguages(true, [](TestMainWindow &) {});
}

TEST(MainWindowFitTest, WithTheFileRowShownNoTextIsClippedAndNothingOverlaps)
{
    inBothLanguages(false, [](TestMainWindow &window) {
        window.enterLocalFileMode();
        EXPECT_EQ(window.widgets.firmwareFileEdit->size(), QSize(585, 27));
        EXPECT_EQ(window.widgets.chooseFileButton->size(), QSize(30, 27));
    });
}

TEST(MainWindowFitTest, WithTheFileRowShownInAnAutomaticModeNoTextIsClippedAndNothingOverlaps)
{
    inBothLanguages(true, [](TestMainWindow &window) { window.enterLocalFileMode(); });
}

TEST(MainWindowFitTest, WithThePartitionsShownNoTextIsClippedAndNothingOverlaps)
{
    inBothLanguages(false,
                    [](TestMainWindow &window) { window.widgets.partitionSelectBox->setChecked(true); });
}

} // namespace
