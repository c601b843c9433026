#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"
#include "tests/endtoend/FolderFaultTest.h"

#include <QDir>
#include <QFile>
#include <QThread>

namespace {

using namespace EndToEnd;

/// Full disks, and files and links that somebody has planted in the folders.
class DiskFaultTest : public FolderFaultTest
{
protected:
    QString userFile() { return scenario().program.homeFolder() + QStringLiteral("/thesis.txt"); }
};

TEST_F(DiskFaultTest, ADiskTooFullForTheImageIsReportedAndTheControlsComeBack)
{
    ASSERT_TRUE(limitDisk(scenario().program.temporaryFolder(), 1536));
    EXPECT_EQ(update(), md5Failed);
    EXPECT_TRUE(logMentions(QStringLiteral("The disk is too full for the download: ")));
    EXPECT_TRUE(logHas("Download ERROR!"));
    expectUntouchedDevice();
}

TEST_F(DiskFaultTest, ADiskThatFillsUpMeanwhileIsReportedAndTheWindowStaysAlive)
{
    UpdateScenario &s = scenario();
    ASSERT_TRUE(limitDisk(s.program.temporaryFolder(), 3584));
    // Slow enough for the space to be used up before the image has arrived.
    s.serverFaults = QStringList{QStringLiteral("slow-drip:path=*.img,range=9,bytes=2048,ms=40")};
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Downloading")));
    QFile ballast(s.program.temporaryFolder() + QStringLiteral("/ballast"));
    ASSERT_TRUE(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (ballast.write(QByteArray(4096, 'x')) == 4096) {
    }
    EXPECT_TRUE(pollUntil(
        [&] { return logMentions(QStringLiteral("The download cannot be stored and is tried again: ")); },
        eventLimitMs, 50));
    EXPECT_TRUE(logMentions(QStringLiteral("No space left on device")));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    // Once there is space again, the download continues where it stopped.
    ballast.close();
    ASSERT_TRUE(ballast.remove());
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(DiskFaultTest, PlantedLinksAreRemovedAndTheirTargetsAreKept)
{
    UpdateScenario &s = scenario();
    const QString folder = downloads() + QStringLiteral("/tmp");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(WholeFile::write(userFile(), "years of work"));
    const QString notThereYet = s.program.homeFolder() + QStringLiteral("/new.txt");
    const QString userFolder = s.program.homeFolder() + QStringLiteral("/papers");
    ASSERT_TRUE(QDir().mkpath(userFolder));
    ASSERT_TRUE(WholeFile::write(userFolder + QStringLiteral("/paper"), "more work"));
    ASSERT_TRUE(QFile::link(userFile(), folder + QStringLiteral("/dev.img")));
    ASSERT_TRUE(QFile::link(userFile(), folder + QStringLiteral("/dev.imgpacket_3")));
    ASSERT_TRUE(QFile::link(notThereYet, folder + QStringLiteral("/dev.imgpacket_4")));
    ASSERT_TRUE(QFile::link(userFolder, folder + QStringLiteral("/dev.imgpacket_5")));
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(WholeFile::read(userFile(), "(no file)"), "years of work");
    EXPECT_EQ(WholeFile::read(userFolder + QStringLiteral("/paper"), "(no file)"), "more work");
    EXPECT_FALSE(QFile::exists(notThereYet));
}

TEST_F(DiskFaultTest, ADownloadFolderThatIsALinkIsNotUsedAndItsContentsAreKept)
{
    UpdateScenario &s = scenario();
    const QString elsewhere = s.program.homeFolder() + QStringLiteral("/elsewhere");
    ASSERT_TRUE(QDir().mkpath(elsewhere + QStringLiteral("/tmp")));
    ASSERT_TRUE(WholeFile::write(elsewhere + QStringLiteral("/tmp/thesis.txt"), "years of work"));
    ASSERT_TRUE(QFile::link(elsewhere, downloads()));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(logMentions(downloads() + QStringLiteral(" is a link to another place and is not used.")));
    EXPECT_EQ(WholeFile::read(elsewhere + QStringLiteral("/tmp/thesis.txt"), "(no file)"), "years of work");
    expectUntouchedDevice();
}

TEST_F(DiskFaultTest, AFolderInTheImagesPlaceIsReportedAndTheControlsComeBack)
{
    const QString inTheWay = downloads() + QStringLiteral("/tmp/dev.img");
    ASSERT_TRUE(QDir().mkpath(inTheWay));
    EXPECT_EQ(update(), md5Failed);
    EXPECT_TRUE(logHas("merge Files Failed!"));
    EXPECT_TRUE(logMentions(inTheWay + QStringLiteral(": ")));
    EXPECT_EQ(QDir(downloads() + QStringLiteral("/tmp")).entryList(QDir::Files), QStringList());
    expectUntouchedDevice();
}

} // namespace
