#include "update/UpdateChoices.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

const QString serverPath = QStringLiteral("/tmp/dev.img");

class UpdateChoicesTest : public testing::Test
{
protected:
    UpdateChoicesTest()
    {
        m_choices.watchImage([this] { m_shown.append(m_choices.image().path); });
        choose(QStringLiteral("/srv/a.img"));
    }
    void choose(const QString &path)
    {
        m_choices.chooseImage({path, FirmwareImage::Origin::User, false, {}});
    }
    void connectDevice(const QString &name)
    {
        ChosenDevice device;
        device.name = name;
        m_choices.setFound(device, false);
    }

    UpdateChoices m_choices;
    QStringList m_shown;
};

TEST_F(UpdateChoicesTest, EachChangeOfTheImageIsReported)
{
    m_choices.useServerImage(serverPath, QStringLiteral("M1"));
    m_choices.dropServerImage();
    EXPECT_EQ(m_shown, (QStringList{QStringLiteral("/srv/a.img"), serverPath, QStringLiteral("/srv/a.img")}));
}

TEST_F(UpdateChoicesTest, ADownloadedImageIsCheckedAndNamesItsModel)
{
    m_choices.useServerImage(serverPath, QStringLiteral("M1"));
    EXPECT_EQ(m_choices.image().origin, FirmwareImage::Origin::Server);
    EXPECT_TRUE(m_choices.image().checked);
    EXPECT_EQ(m_choices.image().model, QStringLiteral("M1"));
}

TEST_F(UpdateChoicesTest, AFilePickedDuringTheUpdateStaysChosenAfterIt)
{
    m_choices.useServerImage(serverPath, QStringLiteral("M1"));
    choose(QStringLiteral("/srv/b.img"));
    m_choices.dropServerImage();
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/b.img"));
}

TEST_F(UpdateChoicesTest, AfterTwoDownloadedImagesTheChosenOneIsRestored)
{
    m_choices.useServerImage(serverPath, QStringLiteral("M1"));
    m_choices.useServerImage(QStringLiteral("/tmp/dev.bin"), QStringLiteral("M2"));
    m_choices.dropServerImage();
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/a.img"));
}

TEST_F(UpdateChoicesTest, ADownloadedImageIsDroppedWhenAnotherModelIsConnected)
{
    m_choices.useServerImage(serverPath, QStringLiteral("M1"));
    connectDevice(QStringLiteral("M1"));
    EXPECT_EQ(m_choices.image().path, serverPath);
    connectDevice(QString());
    EXPECT_EQ(m_choices.image().path, serverPath);
    connectDevice(QStringLiteral("M2"));
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/a.img"));
}

TEST_F(UpdateChoicesTest, APickedFileStaysWhateverIsConnected)
{
    connectDevice(QStringLiteral("M1"));
    connectDevice(QStringLiteral("M2"));
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/a.img"));
}

TEST_F(UpdateChoicesTest, ADeviceInItsBootloaderIsNeverForTheIapProgrammer)
{
    ChosenDevice device;
    device.name = QStringLiteral("M1");
    device.iapFlag = 1;
    m_choices.setFound(device, false);
    EXPECT_TRUE(m_choices.request().isIap());
    m_choices.setFound(device, true);
    EXPECT_FALSE(m_choices.request().isIap());
}

} // namespace
