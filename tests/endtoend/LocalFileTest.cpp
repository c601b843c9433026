#include "tests/endtoend/PersonsFiles.h"

#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

class LocalFileTest : public EndToEndTest
{
protected:
    void start()
    {
        // A local file needs no firmware server.
        scenario().withServer = false;
        ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString();
    }

    QString updateWhatIsChosen()
    {
        UpdateScenario &s = scenario();
        if (!s.pressStart() || !s.probe.waitForEnabled(startButton, false))
            return s.errorText() + s.probe.errorText();
        return titleWhenIdle();
    }

    QStringList filters()
    {
        QStringList texts;
        const QJsonValue items =
            scenario().probe.read(QStringLiteral("fileTypeCombo")).value(QLatin1String("items"));
        for (const QJsonValue item : items.toArray())
            texts.append(item.toString());
        return texts;
    }

    QString shownFolder() { return FileRow::shownFolder(scenario().probe); }
};

TEST_F(LocalFileTest, AChosenFileIsBurnedByteForByteAndItsFolderRemembered)
{
    start();
    UpdateScenario &s = scenario();
    EXPECT_FALSE(s.probe.isVisible(fileEdit));
    EXPECT_FALSE(s.probe.isVisible(chooseButton));
    const QString folder = makeFolder(s, "my images 固件");
    const QString path = folder + QStringLiteral("/new version 2.img");
    QByteArray bytes;
    for (int i = 0; i < 300000; ++i)
        bytes.append(static_cast<char>(i * 7 + i / 251));
    ASSERT_TRUE(WholeFile::write(path, bytes));
    ASSERT_TRUE(FileRow::reveal(s.probe));
    EXPECT_TRUE(s.probe.isVisible(chooseButton));
    ASSERT_TRUE(FileRow::choose(s.probe, s.program.toProgramPath(path))) << s.probe.errorText().toStdString();
    EXPECT_EQ(WholeFile::read(lastDirFile(s)), s.program.toProgramPath(folder).toUtf8());
    EXPECT_TRUE(
        s.program.standardError().contains(QStringLiteral("选择的文件: ") + s.program.toProgramPath(path)));
    EXPECT_EQ(updateWhatIsChosen(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), bytes);
    EXPECT_EQ(argumentsOf(s.program, usbFlasher).value(0),
              (QStringList{QStringLiteral("image"), s.program.toProgramPath(path)}));
    EXPECT_TRUE(logHas("Run LocalFile Update Model!"));
    EXPECT_FALSE(logHas("Try To Get File Address..."));
    EXPECT_EQ(WholeFile::read(path), bytes) << "the user's file was changed";
}

TEST_F(LocalFileTest, CancellingStillRemembersTheFolderThatTheDialogShowedAndKeepsTheImage)
{
    UpdateScenario &s = scenario();
    // Spaces and a line break around the path, as an editor may add them.
    const QString folder = makeFolder(s, "remembered");
    const QString below = makeFolder(s, "remembered/below");
    ASSERT_TRUE(WholeFile::write(lastDirFile(s), "  " + s.program.toProgramPath(folder).toUtf8() + " \r\n"));
    start();
    ASSERT_TRUE(FileRow::reveal(s.probe));
    const QString before = s.probe.text(fileEdit);
    ASSERT_TRUE(FileRow::openDialog(s.probe));
    EXPECT_EQ(shownFolder(), s.program.toProgramPath(folder));
    EXPECT_EQ(filters(), (QStringList{QStringLiteral("IMG 文件 (*.img)"), QStringLiteral("BIN 文件 (*.bin)"),
                                      QStringLiteral("所有文件 (*.*)")}));
    // Changes to the subfolder, and cancels there.
    ASSERT_TRUE(FileRow::enterFolder(s.probe, s.program.toProgramPath(below)));
    ASSERT_TRUE(FileRow::endDialog(s.probe, QStringLiteral("Cancel")));
    EXPECT_EQ(WholeFile::read(lastDirFile(s)), s.program.toProgramPath(below).toUtf8());
    EXPECT_EQ(s.probe.text(fileEdit), before);
    EXPECT_TRUE(s.program.standardError().contains(QStringLiteral("未选择文件")));
}

TEST_F(LocalFileTest, AnIapDeviceIsOfferedBinFilesFirst)
{
    UpdateScenario &s = scenario("DevMdq");
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected")));
    ASSERT_TRUE(FileRow::reveal(s.probe));
    ASSERT_TRUE(FileRow::openDialog(s.probe));
    EXPECT_EQ(filters(), (QStringList{QStringLiteral("BIN 文件 (*.bin)"), QStringLiteral("IMG 文件 (*.img)"),
                                      QStringLiteral("所有文件 (*.*)")}));
    EXPECT_TRUE(FileRow::endDialog(s.probe, QStringLiteral("Cancel")));
}

TEST_F(LocalFileTest, OfTwoImagesNamedBAndCapitalATheLatterIsTheDefaultAndIsBurned)
{
    UpdateScenario &s = scenario();
    const QString folder = s.program.applicationFolder() + QStringLiteral("/qmake/");
    ASSERT_TRUE(WholeFile::write(folder + QStringLiteral("b.img"), "the second one"));
    ASSERT_TRUE(WholeFile::write(folder + QStringLiteral("A.img"), "the first one"));
    start();
    ASSERT_TRUE(FileRow::reveal(s.probe));
    EXPECT_EQ(s.probe.text(fileEdit), s.program.toProgramPath(folder) + QStringLiteral("A.img"));
    EXPECT_TRUE(logHas("find default img file"));
    EXPECT_EQ(updateWhatIsChosen(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("the first one"));
}

TEST_F(LocalFileTest, AStartWithoutAChosenFileFailsInTheFlasherAndGivesTheControlsBack)
{
    start();
    UpdateScenario &s = scenario();
    const QString folder = s.program.applicationFolder() + QStringLiteral("/qmake/");
    ASSERT_TRUE(FileRow::reveal(s.probe));
    EXPECT_EQ(s.probe.text(fileEdit), s.program.toProgramPath(folder));
    EXPECT_TRUE(logHas("not find default img file!"));
    EXPECT_EQ(updateWhatIsChosen(), upgradeFailed);
    EXPECT_EQ(argumentsOf(s.program, usbFlasher),
              (QList<QStringList>{{QStringLiteral("image"), s.program.toProgramPath(folder)}}));
    EXPECT_TRUE(s.burned().isEmpty());
}

TEST_F(LocalFileTest, AFileThatHasGoneFailsInTheFlasherAndTheNextChoiceIsBurned)
{
    start();
    UpdateScenario &s = scenario();
    const QString folder = makeFolder(s, "images");
    const QString gone = folder + QStringLiteral("/gone.img");
    const QString there = folder + QStringLiteral("/there.img");
    ASSERT_TRUE(WholeFile::write(gone, "too early"));
    ASSERT_TRUE(WholeFile::write(there, "in time"));
    ASSERT_TRUE(FileRow::reveal(s.probe));
    ASSERT_TRUE(FileRow::choose(s.probe, s.program.toProgramPath(gone))) << s.probe.errorText().toStdString();
    ASSERT_TRUE(QFile::remove(gone));
    EXPECT_EQ(updateWhatIsChosen(), upgradeFailed);
    EXPECT_TRUE(s.burned().isEmpty());
    // The device now waits in its bootloader, and the controls are enabled for another attempt.
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(FileRow::choose(s.probe, s.program.toProgramPath(there)))
        << s.probe.errorText().toStdString();
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForText(title, upgradeSuccessful, updateLimitMs));
    EXPECT_EQ(s.burned(), QByteArray("in time"));
}

} // namespace
