#include "update/SignatureCheck.h"

#include "tests/common/ManualClock.h"
#include "tests/common/RecordingReporter.h"
#include "tests/common/TextList.h"
#include "tests/signature/Signatures.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString model = QStringLiteral("DevMaa");

class SignatureCheckTest : public testing::Test
{
protected:
    SignatureCheck subject() { return {m_reporter, m_clock, m_keys}; }

    UpdateReason checkServer(const QJsonValue &signature, const char *image = "image")
    {
        const QJsonObject entry{{QStringLiteral("signature"), signature}};
        const QJsonObject root{{QStringLiteral("CurrentVersion"), QJsonObject{{model, entry}}}};
        return subject().checkServerImage(Signatures::path(image), root, model);
    }
    /// Checks a copy of the image with this signature file beside it.
    UpdateReason checkLocal(const QByteArray &signature, bool isRequired = false,
                            const QString &forModel = model)
    {
        EXPECT_TRUE(WholeFile::write(m_image, WholeFile::read(Signatures::path("image"))));
        if (!signature.isNull()) {
            EXPECT_TRUE(WholeFile::write(m_image + QStringLiteral(".minisig"), signature));
        }
        return subject().checkLocalImage(m_image, forModel, isRequired);
    }
    QStringList takeLines()
    {
        const QStringList lines = m_reporter.logLines().mid(m_told);
        m_told += lines.size();
        return lines;
    }

    QStringList m_keys{QString::fromLatin1(Signatures::key("first"))};
    ManualClock m_clock;
    RecordingReporter m_reporter;
    QTemporaryDir m_folder;
    const QString m_image = m_folder.filePath(QStringLiteral("my image.img"));
    const QString m_valid =
        QStringLiteral("The signature is valid. Key %1, comment: model:DevMaa version:1.4.2")
            .arg(MinisignKey::nameOf(MinisignKey::parse(Signatures::key("first"))->id));

private:
    int m_told = 0;
};

TEST_F(SignatureCheckTest, WithoutKeysNothingIsCheckedOrLogged)
{
    m_keys.clear();
    EXPECT_EQ(checkServer(QJsonValue::Undefined), UpdateReason::None);
    EXPECT_EQ(checkServer(QStringLiteral("garbage")), UpdateReason::None);
    EXPECT_EQ(checkLocal("garbage"), UpdateReason::None);
    EXPECT_EQ(takeLines(), QStringList());
}

TEST_F(SignatureCheckTest, WithoutKeysNoSignatureCanBeRequired)
{
    m_keys.clear();
    EXPECT_EQ(checkLocal(Signatures::text("good"), true), UpdateReason::SignatureRefused);
    EXPECT_EQ(takeLines(), list({"The image is refused: This program was built without the maker's keys."}));
}

TEST_F(SignatureCheckTest, KeysOfWhichNoneCanBeReadRefuseEverything)
{
    m_keys = QStringList{QStringLiteral("not a key")};
    EXPECT_EQ(checkServer(QString::fromUtf8(Signatures::text("good"))), UpdateReason::SignatureRefused);
}

TEST_F(SignatureCheckTest, AServersImageWithItsSignatureMayBeWritten)
{
    EXPECT_EQ(checkServer(QString::fromUtf8(Signatures::text("good"))), UpdateReason::None);
    EXPECT_EQ(takeLines(), (QStringList{QStringLiteral("Checking the signature of the image."), m_valid}));
}

TEST_F(SignatureCheckTest, AServersImageNeedsASignature)
{
    for (const QJsonValue &none : {QJsonValue(QJsonValue::Undefined), QJsonValue(QString()), QJsonValue(1),
                                   QJsonValue(QJsonObject())}) {
        EXPECT_EQ(checkServer(none), UpdateReason::SignatureRefused);
        EXPECT_EQ(takeLines(), list({"The image is refused: The manifest has no signature for it."}));
    }
}

TEST_F(SignatureCheckTest, ARefusalIsLoggedWithItsReason)
{
    EXPECT_EQ(checkServer(QString::fromUtf8(Signatures::text("other-model"))),
              UpdateReason::SignatureRefused);
    EXPECT_EQ(takeLines(), list({"Checking the signature of the image.",
                                 "The image is refused: It was signed for DevMab, not for DevMaa."}));
    EXPECT_EQ(checkServer(QString::fromUtf8(Signatures::text("good")), "other-image"),
              UpdateReason::SignatureRefused);
    EXPECT_EQ(takeLines().last(),
              QStringLiteral("The image is refused: It is not the image that was signed."));
}

TEST_F(SignatureCheckTest, AFileWithItsSignatureBesideItMayBeWritten)
{
    for (const bool isRequired : {false, true}) {
        EXPECT_EQ(checkLocal(Signatures::text("good"), isRequired), UpdateReason::None);
        EXPECT_EQ(takeLines(),
                  (QStringList{QStringLiteral("Checking the signature of the image."), m_valid}));
    }
}

TEST_F(SignatureCheckTest, AFileWithoutASignatureIsWrittenUnlessOneIsRequired)
{
    EXPECT_EQ(checkLocal({}), UpdateReason::None);
    EXPECT_EQ(takeLines(), list({"No signature lies beside the file. It is written without a check."}));
    EXPECT_EQ(checkLocal({}, true), UpdateReason::SignatureRefused);
    EXPECT_EQ(takeLines(), list({"The image is refused: No signature lies beside it."}));
}

TEST_F(SignatureCheckTest, AFileWithAnotherSignatureBesideItIsRefused)
{
    for (const char *name : {"stranger", "other-model", "of-another-image", "legacy"})
        EXPECT_EQ(checkLocal(Signatures::text(name)), UpdateReason::SignatureRefused) << name;
    EXPECT_EQ(checkLocal("garbage"), UpdateReason::SignatureRefused);
    EXPECT_EQ(checkLocal(QByteArray(1 << 20, 'x')), UpdateReason::SignatureRefused);
}

TEST_F(SignatureCheckTest, ASignatureThatCannotBeReadRefusesTheFile)
{
    EXPECT_EQ(checkLocal(""), UpdateReason::SignatureRefused);
    EXPECT_EQ(takeLines(),
              list({"The image is refused: The signature beside it cannot be read or is empty."}));
    const QString beside = m_image + QStringLiteral(".minisig");
    ASSERT_TRUE(QFile::remove(beside));
    ASSERT_TRUE(QDir().mkdir(beside));
    EXPECT_EQ(checkLocal({}), UpdateReason::SignatureRefused);
}

TEST_F(SignatureCheckTest, IfTheModelIsUnknownOnlyTheSignatureDecides)
{
    EXPECT_EQ(checkLocal(Signatures::text("good"), true, QString()), UpdateReason::None);
    EXPECT_EQ(takeLines(),
              (QStringList{QStringLiteral("Checking the signature of the image."),
                           QStringLiteral("The device cannot say its model, so that of the signature was "
                                          "not compared."),
                           m_valid}));
    EXPECT_EQ(checkLocal(Signatures::text("stranger"), true, QString()), UpdateReason::SignatureRefused);
}

TEST_F(SignatureCheckTest, ShuttingDownEndsTheCheck)
{
    m_clock.shutDown();
    EXPECT_EQ(checkServer(QString::fromUtf8(Signatures::text("good"))), UpdateReason::ProgramClosed);
    EXPECT_EQ(takeLines(), list({"Checking the signature of the image."}));
}

} // namespace
