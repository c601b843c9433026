#include "harness/session/BusSession.h"
#include "harness/session/ModelOnBus.h"
#include "harness/stage/StagedProgram.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/ProcessUse.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

/// Simulates an hour of waiting, as fast as possible, with a device whose HID interface is opened on every
/// tick: 900 ticks in the usual run, 3600 with QUILLMARSH_LONG_TESTS set.
TEST(IdleHourTest, ResourcesDoNotGrowWhileTheBusIsScanned)
{
    const int ticks = qEnvironmentVariableIsSet("QUILLMARSH_LONG_TESTS") ? 3600 : 900;
    const QString duo = QStringLiteral("DevMbu");
    StagedProgram program(QStringLiteral(IDLE_HOUR));
    ASSERT_TRUE(program.isValid()) << program.errorText().toStdString();
    ASSERT_TRUE(program.setControlList({duo}, {QStringLiteral("USB")}));

    const QString description = program.workingFolder() + QLatin1String("/../bus.json");
    ASSERT_TRUE(WholeFile::write(description, ModelOnBus::describe({ModelOnBus::application(duo)})));
    BusSession bus;
    ASSERT_TRUE(bus.start(description)) << bus.errorText().toStdString();
    ASSERT_TRUE(bus.run(program.launch({QString::number(ticks)}))) << bus.errorText().toStdString();
    ASSERT_EQ(bus.waitForExit(240000), 0) << program.standardError().right(2000).toStdString();

    const QJsonObject result =
        QJsonDocument::fromJson(
            program.standardOutput().section(QLatin1Char('{'), 1).prepend(QLatin1Char('{')).toUtf8())
            .object();
    ASSERT_EQ(result.value(QLatin1String("ticks")).toInt(), ticks)
        << program.standardOutput().right(2000).toStdString();
    EXPECT_EQ(result.value(QLatin1String("shown")).toString(), QStringLiteral("Device Detected"));
    const QJsonObject early = result.value(QLatin1String("early")).toObject();
    const QJsonObject late = result.value(QLatin1String("late")).toObject();
    for (const char *what : {"descriptors", "threads"}) {
        EXPECT_GT(early.value(QLatin1String(what)).toInt(), 0) << what;
        EXPECT_EQ(late.value(QLatin1String(what)).toInt(), early.value(QLatin1String(what)).toInt()) << what;
    }
    const int grown =
        late.value(QLatin1String("kilobytes")).toInt() - early.value(QLatin1String("kilobytes")).toInt();
    RecordProperty("memory_grown_kb", grown);
    RecordProperty("descriptors", late.value(QLatin1String("descriptors")).toInt());
    RecordProperty("threads", late.value(QLatin1String("threads")).toInt());
    // The log pane keeps three lines for each tick.
    if (ProcessUse::memoryTells()) {
        EXPECT_LT(grown, 20000);
    }
}

} // namespace
