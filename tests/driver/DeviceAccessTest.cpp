#include "driver/DeviceAccess.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

class DeviceAccessTest : public testing::Test, protected DriverLog
{
protected:
    void shown(const QString &line) override { m_shown.append(line); }
    void logged(const QString &line) override { ADD_FAILURE() << line.toStdString(); }

    QString m_refused;
    QStringList m_shown;
    DeviceAccess m_access{[this] {
        return m_refused;
    }};
};

TEST_F(DeviceAccessTest, ARefusedDeviceThatWasThereFromTheStartIsToldAtOnceWithTheRuleToInstall)
{
    m_refused = QStringLiteral("/dev/hidraw3");
    m_access.checkSettled(*this);
    ASSERT_EQ(m_shown.size(), 1);
    EXPECT_TRUE(m_shown.first().contains(QStringLiteral("/dev/hidraw3")));
    EXPECT_TRUE(m_shown.first().contains(QStringLiteral("60-quillmarsh.rules")));
    EXPECT_TRUE(m_shown.first().contains(QStringLiteral("/etc/udev/rules.d")));
}

TEST_F(DeviceAccessTest, WithoutARefusedDeviceNothingIsTold)
{
    m_access.checkSettled(*this);
    m_access.check(*this);
    m_access.check(*this);
    EXPECT_TRUE(m_shown.isEmpty());
}

TEST_F(DeviceAccessTest, ADeviceThatIsGivenAccessAMomentAfterItCameIsNotToldOf)
{
    m_access.checkSettled(*this);
    m_refused = QStringLiteral("/dev/hidraw3");
    m_access.check(*this);
    m_refused.clear();
    m_access.check(*this);
    m_refused = QStringLiteral("/dev/hidraw3");
    m_access.check(*this);
    EXPECT_TRUE(m_shown.isEmpty());
}

TEST_F(DeviceAccessTest, ADeviceThatIsStillRefusedAtTheSecondLookIsToldOf)
{
    m_refused = QStringLiteral("/dev/bus/usb/001/004");
    m_access.check(*this);
    EXPECT_TRUE(m_shown.isEmpty());
    m_access.check(*this);
    EXPECT_EQ(m_shown.size(), 1);
}

TEST_F(DeviceAccessTest, ItIsToldOnceInARun)
{
    m_refused = QStringLiteral("/dev/hidraw3");
    m_access.checkSettled(*this);
    m_access.check(*this);
    m_refused = QStringLiteral("/dev/hidraw4");
    m_access.check(*this);
    m_access.check(*this);
    EXPECT_EQ(m_shown.size(), 1);
}

} // namespace
