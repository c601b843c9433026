#include "signature/ImageVerifier.h"

#include "tests/common/ManualClock.h"
#include "tests/signature/Signatures.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString model = QStringLiteral("DevMaa");

QStringList keys(std::initializer_list<const char *> names)
{
    QStringList texts;
    for (const char *name : names)
        texts.append(QString::fromLatin1(Signatures::key(name)));
    return texts;
}

/// Verifies signatures that minisign has made, and manipulated ones.
class ImageVerifierTest : public testing::Test
{
protected:
    SignatureVerdict verify(const QByteArray &text, const char *image = "image",
                            const QString &forModel = model)
    {
        m_last = ImageVerifier(m_keys).verifyImage(Signatures::path(image), text, forModel, m_clock);
        return m_last.verdict;
    }
    SignatureVerdict verify(const char *name, const char *image = "image", const QString &forModel = model)
    {
        return verify(Signatures::text(name), image, forModel);
    }
    QString reason() const { return reasonToRefuse(m_last, model); }

    QStringList m_keys = keys({"first"});
    ManualClock m_clock;
    ImageVerifier::Result m_last;
};

TEST_F(ImageVerifierTest, AnImageSignedByTheMakerIsValid)
{
    EXPECT_EQ(verify("good"), SignatureVerdict::Valid);
    EXPECT_EQ(reason(), QString());
    EXPECT_EQ(m_last.signature.trustedComment, QByteArray("model:DevMaa version:1.4.2"));
}

TEST_F(ImageVerifierTest, AnEmptyImageCanBeSignedToo)
{
    EXPECT_EQ(verify("empty", "empty"), SignatureVerdict::Valid);
    EXPECT_EQ(verify("empty", "image"), SignatureVerdict::OtherImage);
}

TEST_F(ImageVerifierTest, EachOfTheMakersKeysMayHaveSigned)
{
    EXPECT_EQ(verify("second"), SignatureVerdict::UnknownKey);
    m_keys = keys({"first", "second"});
    EXPECT_EQ(verify("good"), SignatureVerdict::Valid);
    EXPECT_EQ(verify("second"), SignatureVerdict::Valid);
    m_keys = keys({"second"});
    EXPECT_EQ(verify("good"), SignatureVerdict::UnknownKey);
}

TEST_F(ImageVerifierTest, ASignatureWithAStrangersKeyIsRefusedAndTheKeyIsNamed)
{
    EXPECT_EQ(verify("stranger"), SignatureVerdict::UnknownKey);
    const std::optional<MinisignKey> stranger = MinisignKey::parse(Signatures::key("stranger"));
    ASSERT_TRUE(stranger);
    EXPECT_EQ(reason(), QStringLiteral("It was signed with the key %1, which this program does not know.")
                            .arg(MinisignKey::nameOf(stranger->id)));
}

TEST_F(ImageVerifierTest, AStrangersKeyWithTheIdOfAMakersKeyIsRefused)
{
    // Combine the id of the maker's key with the stranger's signature.
    const QByteArray own = QByteArray::fromBase64(Signatures::text("good").split('\n').value(1));
    const QByteArray theirs = QByteArray::fromBase64(Signatures::text("stranger").split('\n').value(1));
    EXPECT_EQ(verify(Signatures::withLine(Signatures::text("stranger"), 1,
                                          (own.left(10) + theirs.mid(10)).toBase64())),
              SignatureVerdict::Forged);
}

TEST_F(ImageVerifierTest, EitherOfTwoKeysWithTheSameIdMayHaveSigned)
{
    const QByteArray first = QByteArray::fromBase64(Signatures::key("first"));
    const QByteArray second = QByteArray::fromBase64(Signatures::key("second"));
    const QString namesake = QString::fromLatin1((first.left(10) + second.mid(10)).toBase64());
    m_keys = QStringList{namesake};
    EXPECT_EQ(verify("good"), SignatureVerdict::Forged);
    m_keys += keys({"first"});
    EXPECT_EQ(verify("good"), SignatureVerdict::Valid);
}

TEST_F(ImageVerifierTest, AnAlteredImageIsRefused)
{
    EXPECT_EQ(verify("good", "other-image"), SignatureVerdict::OtherImage);
    EXPECT_EQ(reason(), QStringLiteral("It is not the image that was signed."));
    EXPECT_EQ(verify("of-another-image", "other-image"), SignatureVerdict::Valid);
    EXPECT_EQ(verify("of-another-image"), SignatureVerdict::OtherImage);
}

TEST_F(ImageVerifierTest, AChangedBitAnywhereInTheImageIsFound)
{
    QTemporaryDir folder;
    const QByteArray image = WholeFile::read(Signatures::path("image"));
    const QString path = folder.filePath(QStringLiteral("image"));
    const auto verdictFor = [&](const QByteArray &bytes) {
        EXPECT_TRUE(WholeFile::write(path, bytes));
        return ImageVerifier(m_keys).verifyImage(path, Signatures::text("good"), model, m_clock).verdict;
    };
    EXPECT_EQ(verdictFor(image), SignatureVerdict::Valid);
    for (int at : {0, 256 * 1024 - 1, 256 * 1024, image.size() - 1}) {
        QByteArray altered = image;
        altered[at] = static_cast<char>(altered[at] ^ 1);
        EXPECT_EQ(verdictFor(altered), SignatureVerdict::OtherImage) << at;
    }
    EXPECT_EQ(verdictFor(image.left(image.size() - 1)), SignatureVerdict::OtherImage);
    EXPECT_EQ(verdictFor(image + '\0'), SignatureVerdict::OtherImage);
}

TEST_F(ImageVerifierTest, AnAlteredCommentIsRefused)
{
    for (const char *comment : {"trusted comment: model:DevMaa version:1.4.3",
                                "trusted comment: model:DevMaa version:1.4.2 ", "trusted comment: "})
        EXPECT_EQ(verify(Signatures::withLine(Signatures::text("good"), 2, comment)),
                  SignatureVerdict::Forged)
            << comment;
    EXPECT_EQ(reason(), QStringLiteral("Its signature or its trusted comment was altered."));
    // Put the model's name into the signature for another model.
    EXPECT_EQ(verify(Signatures::withLine(Signatures::text("other-model"), 2,
                                          "trusted comment: model:DevMaa version:1.4.2")),
              SignatureVerdict::Forged);
    // Take the trusted comment of another image together with its signature.
    QByteArray mixed = Signatures::withLine(Signatures::text("of-another-image"), 1,
                                            Signatures::text("good").split('\n').value(1));
    EXPECT_EQ(verify(mixed), SignatureVerdict::Forged);
}

TEST_F(ImageVerifierTest, TheUntrustedCommentMayBeAnything)
{
    EXPECT_EQ(verify(Signatures::withLine(Signatures::text("good"), 0, "untrusted comment: anything")),
              SignatureVerdict::Valid);
}

TEST_F(ImageVerifierTest, AnAlteredSignatureIsRefused)
{
    const QByteArray good = Signatures::text("good");
    // Change the key's id, the first and the last byte of the signature.
    for (int byte : {2, 10, 73}) {
        const QByteArray line = Signatures::withChangedByte(good.split('\n').value(1), byte);
        EXPECT_NE(verify(Signatures::withLine(good, 1, line)), SignatureVerdict::Valid) << byte;
    }
    for (int byte : {0, 63}) {
        const QByteArray line = Signatures::withChangedByte(good.split('\n').value(3), byte);
        EXPECT_EQ(verify(Signatures::withLine(good, 3, line)), SignatureVerdict::Forged) << byte;
    }
}

TEST_F(ImageVerifierTest, AnotherModelsSignatureIsRefused)
{
    EXPECT_EQ(verify("other-model"), SignatureVerdict::OtherModel);
    EXPECT_EQ(reason(), QStringLiteral("It was signed for DevMab, not for DevMaa."));
    EXPECT_EQ(verify("other-model", "image", QStringLiteral("DevMab")), SignatureVerdict::Valid);
    EXPECT_EQ(verify("good", "image", QStringLiteral("devmaa")), SignatureVerdict::OtherModel);
    for (const char *name : {"longer-model", "model-in-a-word", "no-model", "without-a-comment"})
        EXPECT_EQ(verify(name), SignatureVerdict::OtherModel) << name;
    EXPECT_EQ(reason(), QStringLiteral("It was signed for no model, not for DevMaa."));
}

TEST_F(ImageVerifierTest, AnImageMayBeSignedForSeveralModels)
{
    EXPECT_EQ(verify("two-models"), SignatureVerdict::Valid);
    EXPECT_EQ(verify("two-models", "image", QStringLiteral("DevMab")), SignatureVerdict::Valid);
}

TEST_F(ImageVerifierTest, AnUnknownModelIsNotCompared)
{
    EXPECT_EQ(verify("other-model", "image", QString()), SignatureVerdict::Valid);
    EXPECT_EQ(verify("stranger", "image", QString()), SignatureVerdict::UnknownKey);
}

TEST_F(ImageVerifierTest, TheLegacyAlgorithmIsRefused)
{
    EXPECT_EQ(verify("legacy"), SignatureVerdict::LegacyAlgorithm);
    EXPECT_EQ(reason(), QStringLiteral("Its signature is of the legacy kind, which is not accepted."));
    // Under the name of the other algorithm it is still not a signature of the hash.
    const QByteArray line = QByteArray::fromBase64(Signatures::text("legacy").split('\n').value(1));
    EXPECT_EQ(verify(Signatures::withLine(Signatures::text("legacy"), 1, ("ED" + line.mid(2)).toBase64())),
              SignatureVerdict::OtherImage);
}

TEST_F(ImageVerifierTest, TruncatedAndGarbledSignaturesAreRefused)
{
    EXPECT_EQ(verify(QByteArray()), SignatureVerdict::NotASignature);
    EXPECT_EQ(verify(Signatures::text("good").left(150)), SignatureVerdict::NotASignature);
    EXPECT_EQ(verify(QByteArray("garbage")), SignatureVerdict::NotASignature);
    EXPECT_EQ(reason(), QStringLiteral("Its signature is not in minisign's format."));
}

TEST_F(ImageVerifierTest, AnImageThatCannotBeReadIsRefused)
{
    EXPECT_EQ(verify("good", "not-there"), SignatureVerdict::ImageUnreadable);
    EXPECT_EQ(verify("good", "."), SignatureVerdict::ImageUnreadable);
}

TEST_F(ImageVerifierTest, WithoutAValidKeyNoSignatureIsValid)
{
    for (const QStringList &none :
         {QStringList(), QStringList{QString()}, QStringList{QStringLiteral("RW")}}) {
        m_keys = none;
        EXPECT_EQ(verify("good"), SignatureVerdict::UnknownKey);
    }
}

TEST_F(ImageVerifierTest, TheSignatureIsVerifiedBeforeTheImageIsRead)
{
    EXPECT_EQ(verify("stranger", "not-there"), SignatureVerdict::UnknownKey);
    EXPECT_EQ(ImageVerifier(m_keys).verifySignature(Signatures::text("good"), model).verdict,
              SignatureVerdict::Valid);
    EXPECT_EQ(ImageVerifier(m_keys).verifySignature(Signatures::text("other-model"), model).verdict,
              SignatureVerdict::OtherModel);
}

/// A clock that says after a number of queries that the program is shutting down.
class ShuttingDownClock : public ManualClock
{
public:
    explicit ShuttingDownClock(int questions) : m_left(questions) {}
    bool isShuttingDown() const override { return m_left-- <= 0; }
    int left() const { return m_left; }

private:
    mutable int m_left;
};

TEST_F(ImageVerifierTest, AShutdownEndsTheVerificationAfterOneBlockAtMost)
{
    const ShuttingDownClock clock(2);
    const auto result =
        ImageVerifier(m_keys).verifyImage(Signatures::path("image"), Signatures::text("good"), model, clock);
    EXPECT_EQ(result.verdict, SignatureVerdict::Interrupted);
    EXPECT_EQ(clock.left(), -1) << "the image has three blocks";
}

} // namespace
