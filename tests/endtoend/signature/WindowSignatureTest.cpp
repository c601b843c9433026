#include "tests/endtoend/PersonsFiles.h"
#include "tests/endtoend/signature/MakersKeys.h"

#include <QCryptographicHash>

namespace {

using namespace EndToEnd;

/// The window program of a maker who signs.
class WindowSignatureTest : public EndToEndTest
{
protected:
    void publish(const QByteArray &signature)
    {
        MakersKeys::publish(scenario().firmware, scenario().model(), signature);
    }
    QByteArray sign(const char *key = "first", const QString &comment = MakersKeys::comment)
    {
        return MakersKeys::sign(scenario().firmware.imageFile(scenario().model()), key, comment);
    }
    void expectRefused(const QString &reason)
    {
        EXPECT_EQ(update(), md5Failed);
        EXPECT_TRUE(logHas("File MD5 verified successfully."));
        EXPECT_TRUE(
            scenario().program.updateLogLines().contains(QStringLiteral("The image is refused: ") + reason))
            << reason.toStdString();
        expectUntouchedDevice();
    }
    /// Writes a local image, with this signature file beside it.
    QString fileOfTheUsers(const QByteArray &signature = {}, const char *name = "mine.img")
    {
        const QString path = makeFolder(scenario(), "images") + QLatin1Char('/') + QLatin1String(name);
        EXPECT_TRUE(WholeFile::write(path, m_bytes));
        if (!signature.isEmpty()) {
            EXPECT_TRUE(WholeFile::write(path + QStringLiteral(".minisig"), signature));
        }
        return path;
    }
    void startWith(const QString &file)
    {
        UpdateScenario &s = scenario();
        s.withServer = false;
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        ASSERT_TRUE(FileRow::reveal(s.probe));
        ASSERT_TRUE(FileRow::choose(s.probe, s.program.toProgramPath(file)))
            << s.probe.errorText().toStdString();
    }
    QString updateWhatIsChosen()
    {
        UpdateScenario &s = scenario();
        // A refused file may have given the start button back before anybody could see it disabled.
        const auto hasBegun = [this] {
            return logHas("Run LocalFile Update Model!");
        };
        if (!s.pressStart() || !pollUntil(hasBegun))
            return s.errorText() + s.probe.errorText();
        return titleWhenIdle();
    }

    const QByteArray m_bytes = QByteArray("an image of one's own").repeated(500);
};

TEST_F(WindowSignatureTest, AnImageThatItsMakerSignedIsWritten)
{
    publish(sign());
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(scenario().program.updateLog().contains(QLatin1String("The signature is valid. Key ")));
}

TEST_F(WindowSignatureTest, AnImageWithoutASignatureIsRefused)
{
    scenario();
    expectRefused(QStringLiteral("The manifest has no signature for it."));
}

TEST_F(WindowSignatureTest, AnImageThatWasReplacedTogetherWithItsMd5IsRefused)
{
    UpdateScenario &s = scenario();
    publish(sign());
    const QByteArray forged = s.image() + "a little more";
    ASSERT_TRUE(WholeFile::write(s.firmware.imageFile(s.model()), forged));
    s.firmware.setField(
        s.model(), QStringLiteral("md5"),
        QString::fromLatin1(QCryptographicHash::hash(forged, QCryptographicHash::Md5).toHex()));
    expectRefused(QStringLiteral("It is not the image that was signed."));
}

TEST_F(WindowSignatureTest, AnImageForAnotherModelIsRefused)
{
    scenario();
    publish(sign("first", QStringLiteral("model:DevMab version:1.4.2")));
    expectRefused(QStringLiteral("It was signed for DevMab, not for DevMaa."));
}

TEST_F(WindowSignatureTest, InALaunchModeARefusedImageEndsTheUpdateUntilTheWindowIsClosed)
{
    UpdateScenario &s = scenario();
    s.arguments = QStringList{QStringLiteral("TessilonixUpDate"), s.model()};
    publish(sign("stranger"));
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForText(title, md5Failed, updateLimitMs));
    ASSERT_TRUE(pollUntil([this] {
        return logHas("Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!");
    }));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_EQ(s.closeWindow(eventLimitMs), 0);
}

TEST_F(WindowSignatureTest, AFileOfTheUserIsVerifiedIfItsSignatureIsBesideIt)
{
    const QString file = fileOfTheUsers();
    ASSERT_TRUE(WholeFile::write(file + QStringLiteral(".minisig"), MakersKeys::sign(file, "second")));
    startWith(file);
    EXPECT_EQ(updateWhatIsChosen(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), m_bytes);
    EXPECT_TRUE(scenario().program.updateLog().contains(QLatin1String("The signature is valid. Key ")));
}

TEST_F(WindowSignatureTest, AFileOfTheUserWithAWrongSignatureIsRefused)
{
    startWith(fileOfTheUsers(sign()));
    EXPECT_EQ(updateWhatIsChosen(), md5Failed);
    EXPECT_TRUE(logHas("The image is refused: It is not the image that was signed."));
    expectUntouchedDevice();
}

TEST_F(WindowSignatureTest, AFileOfTheUserWithoutASignatureIsWrittenAndTheLogSaysSo)
{
    startWith(fileOfTheUsers());
    EXPECT_EQ(updateWhatIsChosen(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), m_bytes);
    EXPECT_TRUE(logHas("No signature lies beside the file. It is written without a check."));
}

TEST_F(WindowSignatureTest, TheIapPanelProgramsNoFileThatIsRefused)
{
    UpdateScenario &s = scenario("DevMdq");
    const QString file = fileOfTheUsers("garbage", "mine.bin");
    startWith(file);
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected")));
    const auto runsOf = [&s](const char *first) {
        int count = 0;
        for (const StandinRun &run : s.program.runs(QStringLiteral("IAP_Programmer.exe")))
            count += run.arguments.value(0) == QLatin1String(first) ? 1 : 0;
        return count;
    };
    // While the programmer is asked for its ports, a click would be postponed.
    ASSERT_TRUE(pollUntil([&] { return runsOf("GetData") >= 2; }));
    ASSERT_TRUE(s.probe.check(QStringLiteral("iapBox")));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("iapPanel"), true));
    ASSERT_TRUE(s.probe.click(QStringLiteral("iapDownload")));
    ASSERT_TRUE(s.probe.waitForText(title, md5Failed, updateLimitMs));
    EXPECT_TRUE(logHas("The image is refused: Its signature is not in minisign's format."));
    EXPECT_EQ(runsOf("Start"), 0);
    // With a signature, the file is programmed.
    ASSERT_TRUE(WholeFile::write(file + QStringLiteral(".minisig"),
                                 MakersKeys::sign(file, "first", QStringLiteral("model:DevMdq version:2"))));
    ASSERT_TRUE(s.probe.click(QStringLiteral("iapDownload")));
    ASSERT_TRUE(
        s.probe.waitForText(title, QStringLiteral("Current Status: Upgrade Successful"), updateLimitMs))
        << s.probe.errorText().toStdString();
    EXPECT_EQ(runsOf("Start"), 1);
    EXPECT_EQ(s.burned(), m_bytes);
}

} // namespace
