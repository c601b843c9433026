#include "simulator/time/RunningTime.h"
#include "tests/update/UpdateWorkflowTest.h"

#include "harness/session/BusSession.h"
#include "simulator/files/WholeFile.h"
#include "simulator/standin/StandinRuns.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

const QString deviceKey = QStringLiteral("dev");
const QByteArray busDescription = R"({"devices":[{"key":"dev","start":"absent",
    "application":{"vendorId":"0xF101","productId":"0xA001"}}]})";

using StandinScript::step;

QJsonObject print(const char *text)
{
    return step("print", QLatin1String(text));
}

/// The behaviour of a flasher.
struct Behaviour
{
    const char *name;
    /// The steps of each run, without the last one.
    QList<QJsonArray> runs;
    /// The result that must be reported if the device can be reached.
    bool succeeds;
    /// The number of runs until then.
    int tries = 1;
};

void PrintTo(const Behaviour &behaviour, std::ostream *out)
{
    *out << behaviour.name;
}

const QJsonObject burn = step("burn", true);
const QJsonObject success = step("success", true);
const QJsonObject unreachable = print("Open upg device failed\n");
const QJsonObject spl = print("[upg] Upgrade fwc: image.target.spl size 4096\n");
const QJsonObject successByteWise{{QStringLiteral("print"), QStringLiteral("Burn image successfully!\n")},
                                  {QStringLiteral("byteWise"), true},
                                  {QStringLiteral("pauseMs"), 4}};

using Steps = QJsonArray;

const Behaviour behaviours[] = {
    {"Success", {Steps{spl, burn, success}}, true},
    {"SuccessWithoutLineFeed", {Steps{spl, burn, print("Burn image successfully!")}}, true},
    {"UnreachableOnce", {Steps{unreachable}, Steps{burn, success}}, true, 2},
    {"UnreachableTenTimes", {Steps{unreachable}}, false, 10},
    {"CrashInTheMiddle", {Steps{spl, step("crash", true)}}, false},
    {"OnlyGarbage", {Steps{step("garbage", 100000)}}, false},
    {"GarbageAndSuccess", {Steps{step("garbage", 100000), burn, success}}, true},
    {"SplitLines", {Steps{spl, burn, successByteWise}}, true},
    {"StandardErrorOnly", {Steps{step("stderr", QStringLiteral("Burn image successfully!\n"))}}, false},
    {"StandardErrorInBetween",
     {Steps{step("stderr", QStringLiteral("Open upg device failed\n")), spl,
            step("stderr", QStringLiteral("Burn image ")), burn, success,
            step("stderr", QStringLiteral("Open upg device failed\n"))}},
     true},
    {"BurnWithoutSuccessfully", {Steps{spl, print("Burn image at 99 %\n")}}, false},
    {"SuccessfullyWithoutBurn", {Steps{spl, print("Check image successfully!\n")}}, false},
    {"SuccessThenCrash", {Steps{spl, burn, success, step("crash", true)}}, true},
    {"MarkerAfterSuccess",
     {Steps{burn, success, step("sleepMs", 30), print("Upgrade fwc: image.target.data\n")}},
     true},
    {"Nothing", {Steps{}}, false},
};

bool burnsIn(const Behaviour &behaviour)
{
    return behaviour.runs.last().contains(burn);
}

/// Whole updates with flashers in processes of their own and a device on a simulated bus.
class FlasherOnBusTest : public UpdateWorkflowTest
{
protected:
    void SetUp() override
    {
        const QString description = m_tools.file(QStringLiteral("bus.json"));
        ASSERT_TRUE(WholeFile::write(description, busDescription));
        ASSERT_TRUE(m_bus.start(description)) << m_bus.errorText().toStdString();
        // The flashers use this address to burn; they need not see the bus itself.
        const QString address = m_bus.environment().value(QLatin1String("QUILLMARSH_SIM_BUS")).toString();
        qputenv("QUILLMARSH_SIM_BUS", address.toUtf8());
        m_paths.usbFlasher = m_tools.file(QStringLiteral("upgcmd.exe"));
        m_paths.hidFlasher = m_tools.file(QStringLiteral("upgcmdHid.exe"));
        m_choices.setLocalFileMode(true);
    }

    QString flasherPath(const QString &writeType) const
    {
        return writeType == QLatin1String("USB") ? m_paths.usbFlasher : m_paths.hidFlasher;
    }
    /// Makes both flashers play `behaviour` when they burn, with `end` as the last step of each run. Their
    /// reset works normally.
    void play(const Behaviour &behaviour, const QJsonObject &end)
    {
        QList<QJsonArray> runs = behaviour.runs;
        for (QJsonArray &run : runs)
            run.append(end);
        m_tools.forgetRuns();
        for (const QString &tool : {m_paths.usbFlasher, m_paths.hidFlasher})
            ScriptedTools::place(tool, StandinScript::scriptFor(QStringLiteral("image"), runs));
    }
    /// Returns a new image that differs from all earlier ones.
    QByteArray nextImage()
    {
        const QByteArray bytes = "image number " + QByteArray::number(++m_images) + QByteArray(5000, '\x5a');
        const QString path = m_tools.file(QStringLiteral("an image.img"));
        EXPECT_TRUE(WholeFile::write(path, bytes));
        m_choices.chooseImage({path, FirmwareImage::Origin::User, false, {}});
        return bytes;
    }
    QByteArray burned()
    {
        const QString path = m_tools.file(QStringLiteral("burned.img"));
        QFile::remove(path);
        if (!m_bus.client().saveImage(deviceKey, path))
            return {};
        return WholeFile::read(path);
    }
    void putBootloader(bool there)
    {
        m_bus.client().unplug(deviceKey);
        if (there) {
            ASSERT_TRUE(m_bus.client().plugBootloader(deviceKey)) << m_bus.client().errorText().toStdString();
        }
    }
    int countOf(const QString &tool, const char *first) const
    {
        int count = 0;
        for (const StandinRun &each : StandinRuns::read(tool))
            count += each.arguments.value(0) == QLatin1String(first) ? 1 : 0;
        return count;
    }

    void expectOutcome(const Behaviour &behaviour, const QString &writeType, bool bootloader)
    {
        const QByteArray image = nextImage();
        putBootloader(bootloader);
        m_choices.setWriteType(writeType);
        const int titlesBefore = m_reporter.titles().size();
        const int progressBefore = m_reporter.progress().size();
        const UpdateResult result = run();
        EXPECT_TRUE(m_session->isStartAllowed());

        // Only a flasher that has really burned may report success; one that cannot reach a device is run ten
        // times.
        const bool succeeds = behaviour.succeeds && bootloader;
        const int tries = behaviour.succeeds && !bootloader ? 10 : behaviour.tries;
        EXPECT_EQ(m_reporter.titles().mid(titlesBefore).last(),
                  succeeds ? QStringLiteral("Current Status: Upgrade Successful")
                           : QStringLiteral("Current Status: Upgrade Failed!"));
        EXPECT_EQ(burned() == image, succeeds && burnsIn(behaviour));
        EXPECT_EQ(m_reporter.progress().mid(progressBefore).contains(QStringLiteral("100")), succeeds);
        EXPECT_EQ(countOf(flasherPath(writeType), "image"), tries);
        EXPECT_EQ(countOf(flasherPath(writeType), "shcmd"), succeeds ? 1 : 0);
        EXPECT_EQ(result.outcome == UpdateResult::Outcome::Succeeded, succeeds);
    }

    BusSession m_bus;
    int m_images = 0;
};

/// Flashers with all kinds of output and all ways of ending.
class FlasherBehaviourTest : public FlasherOnBusTest, public testing::WithParamInterface<Behaviour>
{
};

TEST_P(FlasherBehaviourTest, IsReportedCorrectlyForEveryExitDeviceStateAndWriteType)
{
    for (const QJsonObject &end : {step("exit", 0), step("exit", 1), step("crash", true)}) {
        for (const bool bootloader : {true, false}) {
            for (const char *writeType : {"USB", "HID"}) {
                SCOPED_TRACE(QJsonDocument(end).toJson(QJsonDocument::Compact).toStdString() +
                             (bootloader ? " bootloader " : " no bootloader ") + writeType);
                play(GetParam(), end);
                expectOutcome(GetParam(), QLatin1String(writeType), bootloader);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AFlasherWith, FlasherBehaviourTest, testing::ValuesIn(behaviours),
                         [](const testing::TestParamInfo<Behaviour> &each) {
                             return std::string(each.param.name);
                         });

TEST_F(FlasherOnBusTest, ASuccessLineSplitAtAnyByteIsASuccess)
{
    const QString line = QStringLiteral("Burn image successfully!\n");
    for (int cut = 1; cut < line.size(); ++cut) {
        const QJsonObject cutPrint{{QStringLiteral("print"), line},
                                   {QStringLiteral("splitAt"), cut},
                                   {QStringLiteral("pauseMs"), 15}};
        play({"", {Steps{cutPrint}}, true}, step("exit", 0));
        EXPECT_EQ(flasher().runFlasher(m_paths.usbFlasher, QStringLiteral("x")), BurnSucceeded) << cut;
        EXPECT_EQ(m_reporter.progress().size(), cut);
    }
}

TEST_F(FlasherOnBusTest, AHangingFlasherIsKilledAtShutdownAndNoResultIsReported)
{
    play({"", {Steps{spl, step("hang", true)}}, false}, step("exit", 0));
    nextImage();
    putBootloader(true);
    m_clock.whileWatching = [this] {
        if (m_reporter.progress().contains(QStringLiteral("16")))
            m_clock.shutDown();
    };
    const RunningTimer timer;
    EXPECT_EQ(run().reason, UpdateReason::ProgramClosed);
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_EQ(m_reporter.titles().last(), QStringLiteral("Current Status: Attempting to Upgrade..."));
    EXPECT_TRUE(burned().isEmpty());
    EXPECT_EQ(StandinRuns::read(m_paths.usbFlasher).value(0).endMs, -1);
    EXPECT_EQ(countOf(m_paths.usbFlasher, "shcmd"), 0);
}

} // namespace
