#include "tests/endtoend/PersonsFiles.h"

#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"

#include <QRect>

#include <functional>

namespace {

using namespace EndToEnd;
using Step = std::function<void(UpdateScenario &)>;

const char *const untouchedTitle = "CurrentStatus: ";
const char *const cannotOpenList = "Failed to open file: dev json.!";
const char *const nothingChosen = "未选择文件";
constexpr qint64 hugeBytes = 100 * 1024 * 1024;

/// An unusual input, and the resulting messages. The rows of a group share one run of the program, in order;
/// `prepare` of the first row of a group is called before the start.
struct Row
{
    const char *group;
    const char *input;
    Step prepare;
    Step act;
    /// A line of the log or of the debug stream that appears because of it.
    const char *said;
    /// The whole state title.
    const char *title;
    bool startEnabled;
    QString monitor;
};

void nothingMore(UpdateScenario &) {}

/// Removes the file, or the folder with its contents.
void clear(const QString &path)
{
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QDir(path).removeRecursively();
    QFile::remove(path);
}

void putBytes(const QString &path, const QByteArray &contents)
{
    clear(path);
    ASSERT_TRUE(WholeFile::write(path, contents));
}

/// Creates a huge sparse file, which needs no space on disk.
void putHuge(const QString &path)
{
    clear(path);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(hugeBytes));
}

void putFolder(const QString &path)
{
    clear(path);
    ASSERT_TRUE(QDir().mkpath(path + QStringLiteral("/inside")));
}

void putUnreadable(const QString &path, const QByteArray &contents)
{
    putBytes(path, contents);
    ASSERT_TRUE(QFile::setPermissions(path, QFile::Permissions()));
}

/// Starts the program without the administrator's right to ignore file permissions, so that the cases are the
/// same for all users who run the tests.
void obeyPermissions(UpdateScenario &s)
{
    const QString probe = s.program.homeFolder() + QStringLiteral("/no-one-may-read-this");
    putUnreadable(probe, "x");
    if (WholeFile::read(probe).isEmpty())
        return;
    s.program.startThrough({QStringLiteral("setpriv"), QStringLiteral("--inh-caps=-all"),
                            QStringLiteral("--ambient-caps=-all"), QStringLiteral("--bounding-set=-all")});
}

QString listFile(UpdateScenario &s)
{
    return s.program.applicationFolder() + QStringLiteral("/qmake/ControlDevList.json");
}

Row listRow(const char *input, const Step &prepare, const char *said)
{
    return {"ControlList", input, prepare, nothingMore, said, untouchedTitle, true, nothing};
}

QList<Row> controlListRows()
{
    return {
        listRow(
            "missing",
            [](UpdateScenario &s) {
                obeyPermissions(s);
                clear(listFile(s));
            },
            cannotOpenList),
        listRow(
            "empty", [](UpdateScenario &s) { putBytes(listFile(s), ""); }, "Invalid JSON format!"),
        listRow(
            "100 MB", [](UpdateScenario &s) { putHuge(listFile(s)); }, cannotOpenList),
        listRow(
            "an array at the top", [](UpdateScenario &s) { putBytes(listFile(s), "[1, 2]"); },
            "Invalid JSON format!"),
        listRow(
            "devices of the wrong type",
            [](UpdateScenario &s) { putBytes(listFile(s), R"({"devices":{"id":"DevMaa"},"WriteType":7})"); },
            "No devices found in the JSON data.!"),
        listRow(
            "unreadable", [](UpdateScenario &s) { putUnreadable(listFile(s), R"({"devices":[]})"); },
            cannotOpenList),
        listRow(
            "a folder of that name", [](UpdateScenario &s) { putFolder(listFile(s)); }, cannotOpenList),
        {"ControlList", "mended",
         [](UpdateScenario &s) {
             clear(listFile(s));
             s.program.setControlList({s.model()}, {QStringLiteral("USB")});
         },
         nothingMore, "Find dev for json dev: DevMaa", untouchedTitle, true, detected},
    };
}

/// Opens the dialog, expects that it shows the documents folder because no folder is remembered, and cancels
/// it.
void lookAtTheDialog(UpdateScenario &s)
{
    if (!s.probe.isVisible(chooseButton)) {
        ASSERT_TRUE(FileRow::reveal(s.probe));
    }
    ASSERT_TRUE(FileRow::openDialog(s.probe)) << s.probe.errorText().toStdString();
    EXPECT_EQ(s.probe.text(QStringLiteral("lookInCombo")), s.program.homeFolder());
    ASSERT_TRUE(FileRow::endDialog(s.probe, QStringLiteral("Cancel"))) << s.probe.errorText().toStdString();
}

Row folderRow(const char *input, const Step &prepare)
{
    return {"LastFolder", input, prepare, lookAtTheDialog, nothingChosen, untouchedTitle, true, detected};
}

QList<Row> lastFolderRows()
{
    return {
        folderRow("missing",
                  [](UpdateScenario &s) {
                      obeyPermissions(s);
                      clear(lastDirFile(s));
                  }),
        folderRow("empty", [](UpdateScenario &s) { putBytes(lastDirFile(s), ""); }),
        folderRow("only blanks", [](UpdateScenario &s) { putBytes(lastDirFile(s), " \r\n\t "); }),
        folderRow("100 MB", [](UpdateScenario &s) { putHuge(lastDirFile(s)); }),
        folderRow("binary",
                  [](UpdateScenario &s) {
                      putBytes(lastDirFile(s), QByteArray::fromHex("00ff10feff2f80810a00c0af"));
                  }),
        folderRow("unreadable", [](UpdateScenario &s) { putUnreadable(lastDirFile(s), "/"); }),
        folderRow("a folder of that name", [](UpdateScenario &s) { putFolder(lastDirFile(s)); }),
    };
}

QList<Row> imageFolderRows()
{
    const auto folder = [](UpdateScenario &s) {
        return s.program.applicationFolder() + QStringLiteral("/qmake");
    };
    const char *const noImage = "not find default img file!";
    return {
        {"NoImageFolder", "missing", [folder](UpdateScenario &s) { clear(folder(s)); }, nothingMore, noImage,
         untouchedTitle, true, nothing},
        {"ImageFolderThatIsAFile", "a file of that name",
         [folder](UpdateScenario &s) { putBytes(folder(s), "x"); }, nothingMore, noImage, untouchedTitle,
         true, nothing},
        {"EmptyImageFolder", "nothing in it but the list", nothingMore, nothingMore, noImage, untouchedTitle,
         true, detected},
        {"ImageThatIsAFolder", "a folder named like an image",
         [folder](UpdateScenario &s) { putFolder(folder(s) + QStringLiteral("/dev.img")); }, nothingMore,
         noImage, untouchedTitle, true, detected},
    };
}

Row nameRow(const char *group, const char *input, const QString &name)
{
    const auto prepare = [name](UpdateScenario &s) {
        s.arguments = QStringList{QStringLiteral("TessilonixUpDate"), name};
    };
    return {group, input, prepare, nothingMore, "IsZN58UseMe?: false", untouchedTitle, true, nothing};
}

QList<Row> modelNameRows()
{
    return {
        nameRow("NameWithBlanks", "blanks around a model name", QStringLiteral(" DevMaa ")),
        nameRow("ChineseName", "Chinese characters", QString::fromUtf8("设备一号")),
        nameRow("LongName", "10,000 characters", QString(10000, QLatin1Char('D'))),
    };
}

void expectTheWindowWithinTheScreen(UpdateScenario &s)
{
    const QJsonArray area =
        s.probe.read(QStringLiteral("BackgroundWidget")).value(QLatin1String("geometry")).toArray();
    ASSERT_EQ(area.size(), 4);
    EXPECT_TRUE(QRect(0, 0, 800, 600)
                    .contains(QRect(area[0].toInt(), area[1].toInt(), area[2].toInt(), area[3].toInt())));
}

void closeTheChooser(UpdateScenario &s)
{
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    ASSERT_TRUE(s.probe.close(QStringLiteral("firmwareChooser")));
}

void clickTenTimes(UpdateScenario &s)
{
    ASSERT_TRUE(s.pressStart());
    for (int i = 0; i < 9; ++i)
        s.probe.click(startButton);
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true, updateLimitMs));
    EXPECT_EQ(s.program.updateLogLines().count(QStringLiteral("Try To Get File Address...")), 1);
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 2) << "the burn and the reset";
    EXPECT_EQ(s.burned(), s.image());
}

/// Expects that all lines appear in the pane, and a warning for each line that cannot be written.
void expectThePaneToWork(UpdateScenario &s)
{
    ASSERT_TRUE(s.probe.waitForWholeText(connection, detected));
    ASSERT_TRUE(s.probe.check(QStringLiteral("logBox")));
    ASSERT_TRUE(
        s.probe.waitForText(QStringLiteral("logTextView"), QStringLiteral("Find deviceName: DevMaa")));
    const int lines = s.probe.text(QStringLiteral("logTextView")).count(QLatin1Char('\n')) + 1;
    EXPECT_GE(lines, 6);
    EXPECT_TRUE(pollUntil(
        [&] { return s.program.standardError().count(QString::fromUtf8("无法打开文件进行写入")) >= lines; }));
    EXPECT_FALSE(QFile::exists(s.program.workingFolder() + QStringLiteral("/UPDLog.txt")));
}

QString staleImage(UpdateScenario &s)
{
    return s.program.applicationFolder() + QStringLiteral("/tmp/dev.img");
}

QList<Row> surroundingRows()
{
    return {
        {"StaleTemporaryImage", "a stale image beside the program",
         [](UpdateScenario &s) {
             ASSERT_TRUE(QDir().mkpath(s.program.applicationFolder() + QStringLiteral("/tmp")));
             ASSERT_TRUE(WholeFile::write(staleImage(s), "of an earlier run"));
         },
         [](UpdateScenario &s) { EXPECT_TRUE(pollUntil([&] { return !QFile::exists(staleImage(s)); })); },
         "删除临时固件文件", untouchedTitle, true, detected},
        {"SmallScreen", "a screen of 800 x 600", [](UpdateScenario &s) { s.screen = QSize(800, 600); },
         expectTheWindowWithinTheScreen, "Find deviceName: DevMaa", untouchedTitle, true, detected},
        {"ClosedChooser", "the chooser closed without a pick",
         [](UpdateScenario &s) { s.devices = {ModelOnBus::bootloader(s.model())}; }, closeTheChooser,
         "ChoseDev is null，return", "CurrentStatus: MD5 verification failed.", true,
         QStringLiteral("FindBootloader")},
        {"TenClicks", "ten quick clicks on Start", nothingMore, clickTenTimes, "RunCmdReset Done.",
         "CurrentStatus: Upgrade Successful", true, detected},
        {"ReadOnlyWorkingFolder", "a working folder that cannot be written",
         [](UpdateScenario &s) {
             obeyPermissions(s);
             ASSERT_TRUE(
                 QFile::setPermissions(s.program.workingFolder(), QFile::ReadOwner | QFile::ExeOwner));
         },
         expectThePaneToWork, "无法打开文件进行写入", untouchedTitle, true, detected},
    };
}

QList<Row> allRows()
{
    return controlListRows() + lastFolderRows() + imageFolderRows() + modelNameRows() + surroundingRows();
}

QList<const char *> groups()
{
    QList<const char *> names;
    for (const Row &row : allRows()) {
        if (names.isEmpty() || qstrcmp(names.last(), row.group) != 0)
            names.append(row.group);
    }
    return names;
}

class UnusualInputTest : public EndToEndTest, public testing::WithParamInterface<const char *>
{
protected:
    void TearDown() override
    {
        EndToEndTest::TearDown();
        // So that the stage can be removed.
        QFile::setPermissions(scenario().program.workingFolder(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    int timesSaid(const char *text)
    {
        const StagedProgram &program = scenario().program;
        return (program.updateLog() + program.standardError()).count(QString::fromUtf8(text));
    }

    void expectRow(const Row &row, int saidBefore)
    {
        UpdateScenario &s = scenario();
        row.act(s);
        EXPECT_TRUE(pollUntil([&] { return timesSaid(row.said) > saidBefore; })) << row.said;
        // Until the first tick the window shows that there is no device.
        EXPECT_TRUE(pollUntil([&] { return timesSaid("Device List Count:") > 0; }));
        EXPECT_TRUE(s.probe.waitForWholeText(connection, row.monitor)) << s.probe.errorText().toStdString();
        EXPECT_EQ(s.probe.text(title), QString::fromUtf8(row.title));
        EXPECT_EQ(s.probe.isEnabled(startButton), row.startEnabled);
    }
};

TEST_P(UnusualInputTest, IsHandledAndReported)
{
    UpdateScenario &s = scenario();
    bool started = false;
    for (const Row &row : allRows()) {
        if (qstrcmp(row.group, GetParam()) != 0)
            continue;
        SCOPED_TRACE(row.input);
        const int saidBefore = timesSaid(row.said);
        row.prepare(s);
        if (!started) {
            ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        }
        started = true;
        expectRow(row, saidBefore);
        if (HasFatalFailure())
            return;
    }
    EXPECT_TRUE(started);
    EXPECT_EQ(s.closeWindow(10000), 0);
}

INSTANTIATE_TEST_SUITE_P(Each, UnusualInputTest, testing::ValuesIn(groups()),
                         [](const testing::TestParamInfo<const char *> &each) { return each.param; });

class TwoCopiesTest : public EndToEndTest
{
};

TEST_F(TwoCopiesTest, TheSecondCopysStartIsRefusedWithALogLineWhileTheFirstIsUpdating)
{
    UpdateScenario &first = scenario();
    first.program.setScript(
        usbFlasher,
        script({{step("sleepMs", 4000), step("burn", true), step("success", true)}, {step("reset", true)}}));
    ASSERT_TRUE(first.start()) << first.errorText().toStdString();
    UpdateScenario second(first.model());
    second.withServer = false; // Both use the server of the first one.
    second.program.shareUserOf(first.program);
    ASSERT_TRUE(second.start()) << second.errorText().toStdString();
    ASSERT_TRUE(second.probe.waitForWholeText(connection, detected));
    ASSERT_TRUE(first.pressStart());
    ASSERT_TRUE(first.probe.waitForText(title, QStringLiteral("Attempting to Upgrade"), updateLimitMs));

    ASSERT_TRUE(second.pressStart());
    const QString refusal = QStringLiteral(
        "Another copy of this program is updating a device. Start again when it has finished.");
    EXPECT_TRUE(pollUntil([&] { return second.program.updateLogLines().contains(refusal); }));
    EXPECT_TRUE(second.probe.isEnabled(startButton));
    EXPECT_EQ(second.probe.text(title), QLatin1String(untouchedTitle));
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(first.burned(), first.image());
    EXPECT_TRUE(second.program.runs(usbFlasher).isEmpty());

    // It can start once the first has ended.
    ASSERT_TRUE(second.pressStart());
    ASSERT_TRUE(second.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(second.burned(), second.image());
}

} // namespace
