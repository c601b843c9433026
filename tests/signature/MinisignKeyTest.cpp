#include "signature/MinisignKey.h"

#include "tests/signature/Signatures.h"

#include <gtest/gtest.h>

namespace {

TEST(MinisignKeyTest, AKeyIsReadWithItsId)
{
    const std::optional<MinisignKey> key = MinisignKey::parse(Signatures::key("first"));
    ASSERT_TRUE(key);
    EXPECT_EQ(key->id.size(), 8);
    EXPECT_EQ(key->key.size(), 32);
    EXPECT_EQ(QByteArray("Ed") + key->id + key->key, QByteArray::fromBase64(Signatures::key("first")));
}

TEST(MinisignKeyTest, AnIdIsWrittenAsMinisignWritesIt)
{
    const QByteArray file = WholeFile::read(Signatures::path("first.pub"));
    const std::optional<MinisignKey> key = MinisignKey::parse(Signatures::key("first"));
    ASSERT_TRUE(key);
    EXPECT_EQ(file.split('\n').value(0),
              "untrusted comment: minisign public key " + MinisignKey::nameOf(key->id).toLatin1());
}

TEST(MinisignKeyTest, AnIdHasNoLeadingZeros)
{
    EXPECT_EQ(MinisignKey::nameOf(QByteArray::fromHex("68b11a8e687a3c02")),
              QStringLiteral("23C7A688E1AB168"));
    EXPECT_EQ(MinisignKey::nameOf(QByteArray::fromHex("0102030405060708")),
              QStringLiteral("807060504030201"));
    EXPECT_EQ(MinisignKey::nameOf(QByteArray::fromHex("00000000000000ff")),
              QStringLiteral("FF00000000000000"));
}

TEST(MinisignKeyTest, AnythingElseIsRefused)
{
    const QByteArray good = Signatures::key("first");
    const QByteArray decoded = QByteArray::fromBase64(good);
    const QByteArray texts[] = {
        "",
        "RW",
        good.left(55),
        good.left(52),
        good + "AAAA",
        good + '\n',
        ' ' + good,
        "untrusted comment: minisign public key\n" + good,
        good.left(20) + '*' + good.mid(21),
        ("ED" + decoded.mid(2)).toBase64(),
        ("Xd" + decoded.mid(2)).toBase64(),
        decoded,
    };
    for (const QByteArray &text : texts)
        EXPECT_FALSE(MinisignKey::parse(text)) << text.toStdString();
}

} // namespace
