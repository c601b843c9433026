#include "tests/cli/CliTest.h"
#include "tests/endtoend/ServerFaultRows.h"

namespace {

using namespace CliCases;

/// The same faults of the server that the window program is tested with.
class CliServerFaultTest : public CliTest, public testing::WithParamInterface<ServerFaultRow>
{
protected:
    /// Returns whether the fetch waits until the program is interrupted, as it does when nothing arrives.
    /// Unlike the window program, quillmarsh-cli gives up a part that is refused again and again.
    bool waitsForEver() const
    {
        return GetParam().end == FetchEnds::Waits &&
               !QLatin1String(GetParam().line).startsWith(QLatin1String("gave up"));
    }
};

TEST_P(CliServerFaultTest, TheDeviceGetsTheExactBytesOrStaysUntouched)
{
    const ServerFaultRow &row = GetParam();
    CliScenario &s = scenario();
    s.serverFaults = QStringList{row.serverFault(1)};
    start({update});
    if (waitsForEver()) {
        ASSERT_TRUE(pollUntil([&] { return s.program.standardOutput().contains(QLatin1String(row.line)); }));
        interrupt();
    }
    const int exitCode = waitForExit();
    if (row.end == FetchEnds::Burned) {
        EXPECT_EQ(exitCode, 0);
        expectSucceeded("resetting");
        EXPECT_TRUE(s.burned() == s.image());
        return;
    }
    expectUntouchedDevice();
    if (waitsForEver()) {
        EXPECT_EQ(exitCode, 130);
        expectResult("cancelled", "fetching", "interrupted", 130);
        return;
    }
    EXPECT_EQ(exitCode, 4);
    const bool isManifest = QLatin1String(row.spec).contains(QLatin1String("=M"));
    expectResult("failed", "fetching", isManifest ? "address-not-found" : "download-failed", 4);
}

std::string nameOfRow(const testing::TestParamInfo<ServerFaultRow> &row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, CliServerFaultTest, testing::ValuesIn(serverFaultRows), nameOfRow);

struct Behaviour
{
    const char *name;
    /// What each run of the flasher does; later runs repeat the last one.
    QList<QJsonArray> runs;
    /// Null if the update succeeds.
    const char *reason;
};

void PrintTo(const Behaviour &behaviour, std::ostream *out)
{
    *out << behaviour.name;
}

QJsonObject print(const char *text)
{
    return step("print", QLatin1String(text));
}

const QJsonObject success = step("success");
const QJsonObject burn = step("burn");

const Behaviour behaviours[] = {
    {"CrashAtOnce", {{step("crash")}}, "writing-failed"},
    {"CrashInTheMiddle", {{print("Upgrade fwc: image.target.os\n"), step("crash")}}, "writing-failed"},
    {"CrashAfterTheSuccess", {{burn, success, step("crash")}}, nullptr},
    {"ExitCodeAfterTheSuccess", {{burn, success, step("exit", 1)}}, nullptr},
    {"Silence", {{step("exit", 0)}}, "writing-failed"},
    {"GarbageAlone", {{step("garbage", 20000)}}, "writing-failed"},
    {"GarbageBeforeTheSuccess", {{step("garbage", 20000), burn, success}}, nullptr},
    {"SuccessOnStandardErrorAlone",
     {{step("stderr", QStringLiteral("Burn image successfully!\n"))}},
     "writing-failed"},
    {"ReachedAtTheThirdTry",
     {{print("Open upg device failed\n"), step("exit", 1)},
      {print("Open upg device failed\n"), step("exit", 1)},
      {burn, success}},
     nullptr},
};

/// Flashers that behave badly.
class CliFlasherTest : public CliTest, public testing::WithParamInterface<Behaviour>
{
};

TEST_P(CliFlasherTest, OnlyASuccessIsReportedAsOne)
{
    CliScenario &s = scenario();
    s.program.setScript(usbFlasher, scriptFor(QStringLiteral("image"), GetParam().runs));
    const int exitCode = run({update});
    if (GetParam().reason) {
        EXPECT_EQ(exitCode, 1);
        expectResult("failed", "flashing", GetParam().reason, 1);
        EXPECT_TRUE(s.burned().isEmpty());
        EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("resets")).toInt(), 0);
    } else {
        EXPECT_EQ(exitCode, 0);
        expectSucceeded("resetting");
        EXPECT_TRUE(s.burned() == s.image());
    }
}

std::string nameOfBehaviour(const testing::TestParamInfo<Behaviour> &behaviour)
{
    return behaviour.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, CliFlasherTest, testing::ValuesIn(behaviours), nameOfBehaviour);

} // namespace
