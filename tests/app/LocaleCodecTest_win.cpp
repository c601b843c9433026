#include "tests/app/LocaleCodecTest.h"

namespace {

TEST_F(LocaleCodecTest, TheCodecIsUtf16)
{
    EXPECT_EQ(QTextCodec::codecForLocale()->name(), "UTF-16");
}

TEST_F(LocaleCodecTest, TextForTheSystemIsStillConvertedByTheCodecNamedSystem)
{
    QTextCodec *system = QTextCodec::codecForName("System");
    ASSERT_NE(system, nullptr);
    EXPECT_EQ(system->fromUnicode(QStringLiteral("libusbK")), "libusbK");
    EXPECT_EQ(system->toUnicode("libusbK"), QStringLiteral("libusbK"));
}

} // namespace
