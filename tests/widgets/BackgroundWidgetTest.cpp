#include "widgets/BackgroundWidget.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

TEST(BackgroundWidgetTest, AChineseLocaleGivesTheChineseTitleAndAnyOtherTheEnglishOne)
{
    EXPECT_EQ(BackgroundWidget(true).windowTitle(), QStringLiteral("固件升级"));
    EXPECT_EQ(BackgroundWidget(false).windowTitle(), QStringLiteral("Quillmarsh"));
}

TEST(BackgroundWidgetTest, TheSizeIsFixedAndTheBackgroundIsGrey)
{
    BackgroundWidget window(false);
    EXPECT_EQ(window.minimumSize(), QSize(800, 490));
    EXPECT_EQ(window.maximumSize(), QSize(800, 490));
    EXPECT_EQ(window.styleSheet(), QStringLiteral("background-color: rgb(240,240,240);"));
    const QImage picture = window.grab().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(240, 240, 240));
    EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1), QColor(240, 240, 240));
}

TEST(BackgroundWidgetTest, ACloseIsRefusedAndReported)
{
    BackgroundWidget window(false);
    const QSignalSpy asked(&window, &BackgroundWidget::sigCloseAsked);
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(asked.count(), 1);
}

TEST(BackgroundWidgetTest, ACloseThatAReceiverAllowsIsAcceptedAndLaterOnesAreNotReported)
{
    BackgroundWidget window(false);
    const QSignalSpy asked(&window, &BackgroundWidget::sigCloseAsked);
    QObject::connect(&window, &BackgroundWidget::sigCloseAsked, &window, [&] { window.allowClose(); });
    window.show();
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(window.isVisible());
    window.show();
    EXPECT_TRUE(window.close());
    EXPECT_EQ(asked.count(), 1);
}

} // namespace
