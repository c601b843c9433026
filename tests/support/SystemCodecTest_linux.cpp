#include "support/SystemCodec.h"

#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

TEST(SystemCodecTest, WithoutASystemCodecItIsUtf8)
{
    ASSERT_EQ(QTextCodec::codecForName("System"), nullptr);
    EXPECT_EQ(systemCodec().toUnicode(QByteArray("\xE9\xA9\xB1\xE5\x8A\xA8")), QStringLiteral("驱动"));
}

} // namespace
