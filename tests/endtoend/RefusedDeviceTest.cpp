#include "harness/process/Polling.h"
#include "tests/endtoend/EndToEnd.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace {

using namespace EndToEnd;

const QString noDriver = QStringLiteral("No driver is needed on this system.");
const QString noPermission = QStringLiteral("No permission to open the device at ");

/// The program without an administrator's right to open everything, beside device files that their
/// owner has locked.
class RefusedDeviceTest : public EndToEndTest
{
protected:
    void start()
    {
        UpdateScenario &s = scenario();
        s.program.startThrough({QStringLiteral("setpriv"), QStringLiteral("--inh-caps=-all"),
                                QStringLiteral("--ambient-caps=-all"),
                                QStringLiteral("--bounding-set=-all")});
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    }
    QStringList pane()
    {
        return scenario().probe.text(QStringLiteral("logTextView")).split(QLatin1Char('\n'));
    }
    QString nodes() const
    {
        return m_scenario->bus.environment().value(QLatin1String("UMOCKDEV_DIR")).toString() +
               QStringLiteral("/dev/");
    }
    void lock(const QString &node)
    {
        ASSERT_TRUE(QFile::setPermissions(nodes() + node, QFile::Permissions())) << node.toStdString();
    }
    int looks() { return scenario().program.standardError().count(QStringLiteral("当前检查到链接设备有:")); }
    bool waitForHint(int limitMs)
    {
        return pollUntil([this] { return !pane().filter(noPermission).isEmpty(); }, limitMs, 50);
    }
};

TEST_F(RefusedDeviceTest, ALineThatNoDriverIsNeededIsShownButNotWrittenToTheLogFile)
{
    start();
    EXPECT_EQ(pane().indexOf(noDriver), 1);
    EXPECT_EQ(pane().count(noDriver), 1);
    EXPECT_FALSE(scenario().program.updateLog().contains(noDriver));
}

TEST_F(RefusedDeviceTest, NothingIsLoggedAboutADeviceThatMayBeOpened)
{
    start();
    ASSERT_TRUE(scenario().probe.waitForWholeText(connection, QStringLiteral("Device Detected")));
    EXPECT_FALSE(waitForHint(3000));
}

TEST_F(RefusedDeviceTest, ADeviceThatThisUserMayNotOpenIsReportedOnceWithTheRulesToInstall)
{
    start();
    ASSERT_TRUE(scenario().probe.waitForWholeText(connection, QStringLiteral("Device Detected")));
    const QStringList interfaces =
        QDir(nodes()).entryList({QStringLiteral("hidraw*")}, QDir::AllEntries | QDir::System);
    ASSERT_FALSE(interfaces.isEmpty());
    lock(interfaces.first());
    ASSERT_TRUE(waitForHint(eventLimitMs)) << pane().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(pane().filter(noPermission).first(),
              noPermission + QStringLiteral("/dev/%1: install the udev rules 60-quillmarsh.rules in "
                                            "/etc/udev/rules.d and plug the device in again.")
                                 .arg(interfaces.first()));
    const int looksBefore = looks();
    ASSERT_TRUE(pollUntil([&] { return looks() >= looksBefore + 3; }, eventLimitMs, 50));
    EXPECT_EQ(pane().filter(noPermission).size(), 1);
    EXPECT_FALSE(scenario().program.updateLog().contains(noPermission));
}

} // namespace
