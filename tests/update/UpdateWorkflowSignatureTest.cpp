#include "tests/signature/Signatures.h"
#include "tests/update/UpdateWorkflowTest.h"

#include <QCryptographicHash>

namespace {

using Outcome = UpdateResult::Outcome;

/// Updates by a program that was built with keys of the maker.
class UpdateWorkflowSignatureTest : public UpdateWorkflowTest
{
protected:
    UpdateWorkflowSignatureTest()
    {
        m_paths.firmwareKeys = QStringList{QString::fromLatin1(Signatures::key("first"))};
        // The signatures are for this model.
        setDevice(QStringLiteral("DevMaa"), 0);
        m_source.key = QStringLiteral("DevMaa");
    }

    void serveSigned(const char *signature, const char *image = "image")
    {
        const QByteArray bytes = WholeFile::read(Signatures::path(image));
        serve();
        ASSERT_TRUE(WholeFile::write(m_paths.downloadedImage(), bytes));
        const QByteArray sum = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
        QJsonObject entry{{QStringLiteral("md5"), QString::fromLatin1(sum)}};
        if (signature)
            entry.insert(QStringLiteral("signature"), QString::fromUtf8(Signatures::text(signature)));
        m_source.root = {{QStringLiteral("CurrentVersion"), QJsonObject{{m_source.key, entry}}}};
    }
    void chooseFile(const char *signature)
    {
        const QString file = m_folder.filePath(QStringLiteral("mine.img"));
        ASSERT_TRUE(WholeFile::write(file, WholeFile::read(Signatures::path("image"))));
        if (signature) {
            ASSERT_TRUE(WholeFile::write(file + QStringLiteral(".minisig"), Signatures::text(signature)));
        }
        m_choices.setLocalFileMode(true);
        m_choices.chooseImage({file, FirmwareImage::Origin::User, false, {}});
    }
    void expectRefused()
    {
        EXPECT_EQ(run(),
                  (UpdateResult{Outcome::Failed, UpdateStage::Fetching, UpdateReason::SignatureRefused}));
        EXPECT_TRUE(m_tools.runs().isEmpty());
        EXPECT_FALSE(events().contains(QStringLiteral("log (send)")));
    }
};

TEST_F(UpdateWorkflowSignatureTest, ASignedImageIsWritten)
{
    serveSigned("good");
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
}

TEST_F(UpdateWorkflowSignatureTest, ARefusedImageEndsTheRunLikeAWrongMd5)
{
    serveSigned("stranger");
    expectRefused();
    const QStringList verdict{events().at(5)};
    EXPECT_TRUE(verdict.first().startsWith(QStringLiteral("log The image is refused: It was signed with")));
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 verified successfully.")) +
                            QStringList{QStringLiteral("log Checking the signature of the image.")} +
                            verdict + QStringList{QStringLiteral("title Current Status: md5 failed!")} +
                            m_controlsBack);
    EXPECT_TRUE(QFile::exists(m_paths.downloadedImage()));
    EXPECT_NE(m_choices.image().origin, FirmwareImage::Origin::Server);
    EXPECT_TRUE(m_session->isStartAllowed());
}

TEST_F(UpdateWorkflowSignatureTest, AnImageWithoutASignatureIsRefused)
{
    serveSigned(nullptr);
    expectRefused();
}

TEST_F(UpdateWorkflowSignatureTest, TheMd5IsComparedFirst)
{
    serveSigned("good");
    ASSERT_TRUE(WholeFile::write(m_paths.downloadedImage(), "tampered with"));
    EXPECT_EQ(run().reason, UpdateReason::ChecksumMismatch);
    EXPECT_FALSE(events().contains(QStringLiteral("log Checking the signature of the image.")));
}

TEST_F(UpdateWorkflowSignatureTest, AnAlteredImageWhoseMd5WasAlteredTooIsRefused)
{
    serveSigned("good", "other-image");
    expectRefused();
}

TEST_F(UpdateWorkflowSignatureTest, InALaunchModeARefusedImageEndsInTheBlockingLoop)
{
    m_launch.isZN58Mode = true;
    m_clock.whileWatching = [this] {
        if (m_clock.sleeps().count(5) == 10)
            m_clock.shutDown();
    };
    serveSigned("other-model");
    EXPECT_EQ(run().reason, UpdateReason::SignatureRefused);
    EXPECT_EQ(m_session->stage(), UpdateStage::Blocked);
}

TEST_F(UpdateWorkflowSignatureTest, AnIapDevicesImageIsCheckedBeforeThePanelIsTold)
{
    setDevice(QStringLiteral("DevMaa"), 1);
    serveSigned("other-model");
    expectRefused();
    EXPECT_FALSE(events().contains(QStringLiteral("log (panel)")));
    serveSigned("good");
    run();
    EXPECT_TRUE(events().contains(QStringLiteral("log (panel)")));
}

TEST_F(UpdateWorkflowSignatureTest, AFileOfTheUserIsCheckedIfASignatureIsBesideIt)
{
    chooseFile("good");
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    chooseFile("of-another-image");
    m_tools.forgetRuns();
    const int before = events().size();
    EXPECT_EQ(run().reason, UpdateReason::SignatureRefused);
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(events().mid(before),
              (QStringList{QStringLiteral("log Run LocalFile Update Model!"),
                           QStringLiteral("title Current Status: Executing Local Flashing"),
                           QStringLiteral("log Checking the signature of the image."),
                           QStringLiteral("log The image is refused: It is not the image that was signed."),
                           QStringLiteral("title Current Status: md5 failed!")}) +
                  m_controlsBack);
}

TEST_F(UpdateWorkflowSignatureTest, AFileWithoutASignatureIsWrittenAndTheLogSaysSo)
{
    chooseFile(nullptr);
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_TRUE(events().contains(
        QStringLiteral("log No signature lies beside the file. It is written without a check.")));
}

TEST_F(UpdateWorkflowSignatureTest, ADeviceInItsBootloaderNeedNotBeTheModelThatWasThereBefore)
{
    ChosenDevice before;
    before.name = QStringLiteral("DevMab");
    m_choices.setFound(before, true);
    chooseFile("good");
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
}

TEST_F(UpdateWorkflowSignatureTest, ShuttingDownDuringTheCheckDoesNotChangeTheDevice)
{
    serveSigned("good");
    m_source.onFetch = [this] {
        // One query after the fetch, and one before each block of the image.
        m_clock.questionsLeft = 2;
    };
    EXPECT_EQ(run(), (UpdateResult{Outcome::Cancelled, UpdateStage::Fetching, UpdateReason::ProgramClosed}));
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(m_session->stage(), UpdateStage::ProgramClosed);
}

} // namespace
