#include "signature/MinisignSignature.h"

#include "tests/signature/Signatures.h"

#include <gtest/gtest.h>

namespace {

SignatureVerdict parsed(const QByteArray &text)
{
    MinisignSignature signature;
    return MinisignSignature::parse(text, &signature);
}

/// Returns the models in a trusted comment.
QStringList modelsIn(const char *comment)
{
    MinisignSignature signature;
    signature.trustedComment = comment;
    return signature.models();
}

TEST(MinisignSignatureTest, ASignatureIsReadWhole)
{
    MinisignSignature signature;
    const QByteArray text = Signatures::text("good");
    ASSERT_EQ(MinisignSignature::parse(text, &signature), SignatureVerdict::Valid);
    EXPECT_EQ(QByteArray("ED") + signature.keyId + signature.imageSignature,
              QByteArray::fromBase64(text.split('\n').value(1)));
    EXPECT_EQ(signature.keyId.size(), 8);
    EXPECT_EQ(signature.trustedComment, QByteArray("model:DevMaa version:1.4.2"));
    EXPECT_EQ(signature.commentSignature, QByteArray::fromBase64(text.split('\n').value(3)));
}

TEST(MinisignSignatureTest, LinesMayEndAsOnWindowsAndTheLastEndMayBeMissing)
{
    QByteArray text = Signatures::text("good");
    EXPECT_EQ(parsed(text.trimmed()), SignatureVerdict::Valid);
    EXPECT_EQ(parsed(text + '\n'), SignatureVerdict::Valid);
    MinisignSignature signature;
    ASSERT_EQ(MinisignSignature::parse(text.replace('\n', "\r\n"), &signature), SignatureVerdict::Valid);
    EXPECT_EQ(signature.trustedComment, QByteArray("model:DevMaa version:1.4.2"));
}

TEST(MinisignSignatureTest, TheLegacyAlgorithmIsReported)
{
    EXPECT_EQ(parsed(Signatures::text("legacy")), SignatureVerdict::LegacyAlgorithm);
}

TEST(MinisignSignatureTest, ATruncatedSignatureIsRefused)
{
    const QByteArray text = Signatures::text("good").trimmed();
    for (int size = 0; size < text.size(); ++size)
        EXPECT_EQ(parsed(text.left(size)), SignatureVerdict::NotASignature) << size;
}

TEST(MinisignSignatureTest, GarbageIsNotASignature)
{
    const QByteArray good = Signatures::text("good");
    const QByteArray first = good.split('\n').value(1);
    const QByteArray decoded = QByteArray::fromBase64(first);
    const QByteArray texts[] = {
        "",
        "\n\n\n\n",
        QByteArray(4, '\0'),
        "garbage",
        WholeFile::read(Signatures::path("first.pub")),
        Signatures::withLine(good, 0, "comment: signature"),
        Signatures::withLine(good, 2, "comment: model:DevMaa"),
        Signatures::withLine(good, 1, first + "AAAA"),
        Signatures::withLine(good, 1, first + ' '),
        Signatures::withLine(good, 1, first.left(40) + '*' + first.mid(41)),
        Signatures::withLine(good, 1, ("XX" + decoded.mid(2)).toBase64()),
        Signatures::withLine(good, 1, ""),
        Signatures::withLine(good, 3, ""),
        Signatures::withLine(good, 3, first),
        good + "one line more\n",
        '\n' + good,
        good + good,
    };
    for (const QByteArray &text : texts)
        EXPECT_EQ(parsed(text), SignatureVerdict::NotASignature) << text.toStdString();
}

TEST(MinisignSignatureTest, ATextThatIsTooLongIsNotASignature)
{
    const QByteArray good = Signatures::text("good");
    const int room = MinisignSignature::sizeLimit - good.size();
    const auto longer = [&good](int by) {
        return Signatures::withLine(good, 0, good.split('\n').value(0) + QByteArray(by, 'x'));
    };
    EXPECT_EQ(parsed(longer(room)), SignatureVerdict::Valid);
    EXPECT_EQ(parsed(longer(room + 1)), SignatureVerdict::NotASignature);
}

TEST(MinisignSignatureTest, ModelsAreWholeWords)
{
    const QStringList one{QStringLiteral("DevMaa")};
    EXPECT_EQ(modelsIn("model:DevMaa version:1.4.2"), one);
    EXPECT_EQ(modelsIn("version:1.4.2 model:DevMaa"), one);
    EXPECT_EQ(modelsIn("version:1.4.2\tmodel:DevMaa\t"), one);
    EXPECT_EQ(modelsIn("model:DevMaa model:DevMab"), one + QStringList{QStringLiteral("DevMab")});
    EXPECT_EQ(modelsIn(""), QStringList());
    EXPECT_EQ(modelsIn("supermodel:DevMaa Model:DevMaa model DevMaa"), QStringList());
    EXPECT_EQ(modelsIn("model:"), QStringList{QString()});
}

} // namespace
