#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "tests/endtoend/FolderFaultTest.h"

#include <QDir>
#include <QFile>

namespace {

using namespace EndToEnd;

const QFile::Permissions forEverybody(0x7777);

/// Temporary folders to which somebody else may write.
class SharedFolderTest : public FolderFaultTest
{
protected:
    QString images() { return downloads() + QStringLiteral("/tmp"); }
    QString plantedFile() { return images() + QStringLiteral("/planted"); }

    void plantFile()
    {
        ASSERT_TRUE(QDir().mkpath(images()));
        ASSERT_TRUE(WholeFile::write(plantedFile(), "somebody else's"));
    }
    void expectUntouchedFolder()
    {
        EXPECT_EQ(QDir(images()).entryList(QDir::Files), QStringList{QStringLiteral("planted")});
        EXPECT_EQ(WholeFile::read(plantedFile(), "(no file)"), "somebody else's");
    }
};

TEST_F(SharedFolderTest, TheDownloadFoldersAreCreatedForTheUserOnly)
{
    scenario();
    EXPECT_EQ(update(), upgradeSuccessful);
    for (const char *folder : {"", "/qmake", "/tmp"}) {
        const QFile::Permissions permissions = QFile::permissions(downloads() + QLatin1String(folder));
        EXPECT_EQ(permissions & (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner),
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
            << folder;
        EXPECT_EQ(int(permissions & 0x0077), 0) << folder;
    }
}

TEST_F(SharedFolderTest, AFolderThatOthersMayWriteIsNeitherClearedNorUsed)
{
    plantFile();
    ASSERT_TRUE(QFile::setPermissions(downloads(), forEverybody));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(logMentions(downloads() + QStringLiteral(" can be changed by other users and is not used.")));
    EXPECT_TRUE(logHas("ensurePath Failed!"));
    expectUntouchedFolder();
    expectUntouchedDevice();
}

TEST_F(SharedFolderTest, TheFolderOfTheImageIsCheckedSeparately)
{
    plantFile();
    ASSERT_TRUE(QFile::setPermissions(images(), forEverybody));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(logMentions(images() + QStringLiteral(" can be changed by other users and is not used.")));
    expectUntouchedFolder();
    expectUntouchedDevice();
}

TEST_F(SharedFolderTest, AFolderThatOthersMayReplaceIsNotUsed)
{
    plantFile();
    ASSERT_TRUE(QFile::setPermissions(scenario().program.temporaryFolder(), forEverybody));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(
        logMentions(downloads() + QStringLiteral(" can be replaced by other users and is not used.")));
    expectUntouchedFolder();
    expectUntouchedDevice();
}

TEST_F(SharedFolderTest, AFolderThatIsOpenedToOthersDuringTheRunIsNeitherClearedNorUsed)
{
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(s.probe.click(startButton));
    // The run waits for the user to choose a model.
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    plantFile();
    ASSERT_TRUE(QFile::setPermissions(downloads(), forEverybody));
    ASSERT_TRUE(s.probe.click(QStringLiteral("choose DevMaa")));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true, updateLimitMs));
    EXPECT_TRUE(logMentions(downloads() + QStringLiteral(" can be changed by other users and is not used.")));
    EXPECT_TRUE(logHas("ensurePath Failed!"));
    expectUntouchedFolder();
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
}

} // namespace
