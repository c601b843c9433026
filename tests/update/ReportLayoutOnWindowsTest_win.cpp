#include "support/process/ToolRun.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Returns the report that a program sends on this version of Windows. Wine selects the version by the name
/// of the program.
QByteArray reportOn(const QString &version)
{
    const QTemporaryDir folder;
    const QString program = folder.filePath(QStringLiteral("report-on-%1.exe").arg(version));
    EXPECT_TRUE(QFile::copy(QStringLiteral(REPORT_LAYOUT), program));
    QSettings settings(QStringLiteral(R"(HKEY_CURRENT_USER\Software\Wine\AppDefaults\)") +
                           QFileInfo(program).fileName(),
                       QSettings::NativeFormat);
    settings.setValue(QStringLiteral("Version"), version);
    settings.sync();
    return runToolToEnd(program, {}, 30000).standardOutput;
}

TEST(ReportLayoutOnWindowsTest, OnWindows10TheReportIdLeads)
{
    EXPECT_EQ(reportOn(QStringLiteral("win10")), "kind 1, 513 bytes: 04 43 52 54 00 00 41 50 50 4e 45 57 00");
}

TEST(ReportLayoutOnWindowsTest, OnWindows8TheReportIdLeads)
{
    EXPECT_EQ(reportOn(QStringLiteral("win8")), "kind 1, 513 bytes: 04 43 52 54 00 00 41 50 50 4e 45 57 00");
}

TEST(ReportLayoutOnWindowsTest, OnWindows7AndOlderTheCommandIsShiftedWithoutTheReportId)
{
    for (const char *version : {"win7", "vista"}) {
        EXPECT_EQ(reportOn(QLatin1String(version)),
                  "kind 2, 513 bytes: 43 52 54 00 00 41 50 50 4e 45 57 00 00")
            << version;
    }
}

} // namespace
