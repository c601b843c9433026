#include "devices/DeviceAccess.h"

#include <QString>

#include <gtest/gtest.h>

namespace {

class DeviceAccessTest : public testing::Test
{
protected:
    QString m_refused;
    DeviceAccess m_access{[this] {
        return m_refused;
    }};
};

TEST_F(DeviceAccessTest, ARefusedDeviceThatIsConnectedAtStartIsReportedAtOnceWithTheRulesToInstall)
{
    m_refused = QStringLiteral("/dev/hidraw3");
    const QString hint = m_access.checkSettled();
    EXPECT_TRUE(hint.contains(QStringLiteral("/dev/hidraw3")));
    EXPECT_TRUE(hint.contains(QStringLiteral("60-quillmarsh.rules")));
    EXPECT_TRUE(hint.contains(QStringLiteral("/etc/udev/rules.d")));
}

TEST_F(DeviceAccessTest, WithoutARefusedDeviceNothingIsReported)
{
    EXPECT_EQ(m_access.checkSettled(), QString());
    EXPECT_EQ(m_access.check(), QString());
    EXPECT_EQ(m_access.check(), QString());
}

TEST_F(DeviceAccessTest, ADeviceThatBecomesAccessibleShortlyAfterItAppearsIsNotReported)
{
    EXPECT_EQ(m_access.checkSettled(), QString());
    m_refused = QStringLiteral("/dev/hidraw3");
    EXPECT_EQ(m_access.check(), QString());
    m_refused.clear();
    EXPECT_EQ(m_access.check(), QString());
    m_refused = QStringLiteral("/dev/hidraw3");
    EXPECT_EQ(m_access.check(), QString());
}

TEST_F(DeviceAccessTest, ADeviceThatIsStillRefusedAtTheSecondCheckIsReported)
{
    m_refused = QStringLiteral("/dev/bus/usb/001/004");
    EXPECT_EQ(m_access.check(), QString());
    EXPECT_TRUE(m_access.check().contains(m_refused));
}

TEST_F(DeviceAccessTest, OnlyOneHintIsGivenInARun)
{
    m_refused = QStringLiteral("/dev/hidraw3");
    EXPECT_NE(m_access.checkSettled(), QString());
    EXPECT_EQ(m_access.check(), QString());
    m_refused = QStringLiteral("/dev/hidraw4");
    EXPECT_EQ(m_access.check(), QString());
    EXPECT_EQ(m_access.check(), QString());
}

} // namespace
