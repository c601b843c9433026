#include "devices/ControlledDeviceList.h"

#include "tests/common/RecordedDebugStream.h"
#include "tests/common/RecordingReporter.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

// Opening a pipe to which nobody writes would block the window forever.
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
