#include "support/SystemCodec.h"

#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

TEST(SystemCodecTest, PlainTextSurvivesBothWays)
{
    const QString text = QStringLiteral("C:\\Windows\\System32\\drivers\\libusbK.sys");
    const QByteArray bytes = systemCodec().fromUnicode(text);
    EXPECT_EQ(bytes, "C:\\Windows\\System32\\drivers\\libusbK.sys");
    EXPECT_EQ(systemCodec().toUnicode(bytes), text);
}

TEST(SystemCodecTest, ALocaleCodecOfTwoBytesForEachCharacterDoesNotChangeIt)
{
    QTextCodec *before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-16"));
    const QByteArray bytes = systemCodec().fromUnicode(QStringLiteral("inf"));
    QTextCodec::setCodecForLocale(before);
    EXPECT_EQ(bytes, "inf");
}

} // namespace
