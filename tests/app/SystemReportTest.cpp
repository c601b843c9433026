#include "app/SystemReport.h"

#include "tests/common/RecordedDebugStream.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

namespace {

TEST(SystemReportTest, TheDescriptionNamesVersionLocaleAndApplicationFolderOnOneLine)
{
    const QString versionBefore = QCoreApplication::applicationVersion();
    QCoreApplication::setApplicationVersion(QStringLiteral("12.34.56"));
    const QString line = SystemReport::describe();
    QCoreApplication::setApplicationVersion(versionBefore);
    EXPECT_TRUE(line.startsWith(QCoreApplication::applicationName() + QStringLiteral(" 12.34.56, ")));
    EXPECT_TRUE(line.contains(QStringLiteral(", ") + QLocale::system().name() + QStringLiteral(", ")));
    EXPECT_TRUE(line.endsWith(QStringLiteral(", ") + QCoreApplication::applicationDirPath()));
    EXPECT_FALSE(line.contains(QLatin1Char('\n')));
}

TEST(SystemReportTest, TheTlsVersionsGoToTheDebugStreamInThreeLines)
{
    const RecordedDebugStream stream;
    SystemReport::writeTlsVersions();
    // Qt may write a line of its own first, when it loads the TLS library.
    const QStringList lines = stream.lines().mid(qMax(0, stream.lines().size() - 3));
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines.at(0).startsWith(QStringLiteral("QSslSocket= ")));
    EXPECT_TRUE(lines.at(1).startsWith(QStringLiteral("true ")));
    EXPECT_EQ(lines.at(2), QStringLiteral("SSL is supported!"));
}

} // namespace
