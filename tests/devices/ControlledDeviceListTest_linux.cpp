#include "devices/ControlledDeviceList.h"

#include "tests/support/RecordedDebugStream.h"
#include "tests/support/RecordingReporter.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

// Opening a pipe that nobody writes to would hold up the window for ever.
TEST(ControlledDeviceListPipeTest, ANamedPipeOfThatNameCountsAsAFileThatCannotBeOpened)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("ControlDevList.json"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    const RecordedDebugStream debug;
    RecordingReporter reporter;
    EXPECT_FALSE(ControlledDeviceList::findDevForJson(path, QStringLiteral("DevMaa"), reporter));
    EXPECT_EQ(reporter.logLines(), QStringList{QStringLiteral("Failed to open file: dev json.!")});
}

} // namespace
