#include "widgets/WidgetTab1.h"

#include "tests/common/RecordedDebugStream.h"
#include "widgets/LocalFileHost.h"

#include <QMetaMethod>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QColor grey(154, 154, 154);
const QColor blue(45, 99, 167);
const QColor white(Qt::white);

class CountingHost : public LocalFileHost
{
public:
    void enterLocalFileMode() override { ++entered; }
    int entered = 0;
};

class WidgetTab1Test : public testing::Test
{
protected:
    WidgetTab1Test()
    {
        m_page.setStyleSheet(QStringLiteral("background-color: white;"));
        m_page.resize(776, 351);
    }

    QImage picture(double level)
    {
        m_page.onSetPicJD(level);
        return m_page.grab().toImage();
    }

    void click(Qt::MouseButton button, QPoint where)
    {
        QTest::mouseClick(&m_page, button, Qt::NoModifier, where);
    }

    CountingHost m_host;
    WidgetTab1 m_page{nullptr, &m_host};
};

TEST_F(WidgetTab1Test, AtLevelZeroNoBlueIsDrawn)
{
    const QImage drawn = picture(0.0);
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor pixel = drawn.pixelColor(x, y);
            ASSERT_EQ(pixel.red(), pixel.blue()) << x << ", " << y;
        }
    }
    EXPECT_EQ(drawn.pixelColor(20, 125), grey);
    EXPECT_EQ(drawn.pixelColor(100, 235), grey);
}

TEST_F(WidgetTab1Test, AtLevelFiftyTheLowerSixtyTwoPixelsAreBlue)
{
    const QImage drawn = picture(50.0);
    EXPECT_EQ(drawn.pixelColor(20, 177), grey);
    EXPECT_EQ(drawn.pixelColor(20, 178), blue);
    EXPECT_EQ(drawn.pixelColor(100, 239), blue);
    EXPECT_EQ(drawn.pixelColor(100, 120), grey);
}

TEST_F(WidgetTab1Test, AtLevelHundredTheWholeBodyIsBlueUnderTheWhiteScreenAndButton)
{
    const QImage drawn = picture(100.0);
    EXPECT_EQ(drawn.pixelColor(100, 115), blue);
    EXPECT_EQ(drawn.pixelColor(15, 177), blue);
    EXPECT_EQ(drawn.pixelColor(192, 150), blue);
    EXPECT_EQ(drawn.pixelColor(100, 239), blue);
    EXPECT_EQ(drawn.pixelColor(100, 177), white) << "the screen";
    EXPECT_EQ(drawn.pixelColor(182, 177), white) << "the button";
}

TEST_F(WidgetTab1Test, TheBodyHasRoundedCornersAlsoWhereItIsBlue)
{
    for (const double level : {0.0, 100.0}) {
        const QImage drawn = picture(level);
        EXPECT_EQ(drawn.pixelColor(15, 115), white);
        EXPECT_EQ(drawn.pixelColor(192, 115), white);
        EXPECT_EQ(drawn.pixelColor(15, 239), white);
        EXPECT_EQ(drawn.pixelColor(192, 239), white);
        EXPECT_NE(drawn.pixelColor(18, 118), white) << "the radius is no larger than 10";
    }
}

TEST_F(WidgetTab1Test, TheScreenAndTheButtonHaveTheirPositions)
{
    const QImage drawn = picture(0.0);
    EXPECT_EQ(drawn.pixelColor(26, 150), grey);
    EXPECT_EQ(drawn.pixelColor(27, 150), white);
    EXPECT_EQ(drawn.pixelColor(171, 150), white);
    EXPECT_EQ(drawn.pixelColor(172, 150), grey);
    EXPECT_EQ(drawn.pixelColor(100, 126), grey);
    EXPECT_EQ(drawn.pixelColor(100, 127), white);
    EXPECT_EQ(drawn.pixelColor(100, 226), white);
    EXPECT_EQ(drawn.pixelColor(100, 227), grey);
    // The ellipse: 10 x 10 at (177, 172).
    EXPECT_EQ(drawn.pixelColor(176, 177), grey);
    EXPECT_NE(drawn.pixelColor(177, 177), grey);
    EXPECT_NE(drawn.pixelColor(186, 177), grey);
    EXPECT_EQ(drawn.pixelColor(187, 177), grey);
    EXPECT_EQ(drawn.pixelColor(182, 171), grey);
    EXPECT_NE(drawn.pixelColor(182, 172), grey);
    EXPECT_NE(drawn.pixelColor(182, 181), grey);
    EXPECT_EQ(drawn.pixelColor(182, 182), grey);
}

TEST_F(WidgetTab1Test, TheStyleSheetsBackgroundIsDrawn)
{
    // Inside another widget, because Qt always fills the background of a window.
    QWidget ground;
    ground.resize(m_page.size());
    ground.setStyleSheet(QStringLiteral("background-color: red;"));
    m_page.setStyleSheet(QStringLiteral("background-color: rgb(1,2,3);"));
    m_page.setParent(&ground);
    EXPECT_EQ(ground.grab().toImage().pixelColor(400, 20), QColor(1, 2, 3));
    m_page.setParent(nullptr);
}

TEST_F(WidgetTab1Test, PaintingReportsTheLevelAndItsRectangle)
{
    const RecordedDebugStream debug;
    picture(50.0);
    ASSERT_EQ(debug.lines().size(), 2);
    EXPECT_EQ(debug.lines().at(0), QStringLiteral("double(JD*k):  62.5"));
    EXPECT_EQ(debug.lines().at(1), QStringLiteral("checkrect:   QRect(15,178 178x125)"));
}

TEST_F(WidgetTab1Test, AMiddleClickOnTheCornersOfTheStripEntersLocalFileMode)
{
    int clicks = 0;
    for (const QPoint corner : {QPoint(709, 305), QPoint(759, 305), QPoint(709, 320), QPoint(759, 320)}) {
        click(Qt::MiddleButton, corner);
        EXPECT_EQ(m_host.entered, ++clicks) << corner.x() << ", " << corner.y();
    }
}

TEST_F(WidgetTab1Test, AMiddleClickBesideTheStripDoesNothing)
{
    for (const QPoint beside : {QPoint(760, 310), QPoint(730, 321), QPoint(708, 310), QPoint(730, 304)})
        click(Qt::MiddleButton, beside);
    EXPECT_EQ(m_host.entered, 0);
}

TEST_F(WidgetTab1Test, ALeftOrRightClickAnywhereDoesNothing)
{
    for (const QPoint where : {QPoint(709, 305), QPoint(730, 310), QPoint(100, 177)}) {
        click(Qt::LeftButton, where);
        click(Qt::RightButton, where);
    }
    EXPECT_EQ(m_host.entered, 0);
}

TEST_F(WidgetTab1Test, TheGestureIsReportedOnTheDebugStream)
{
    const RecordedDebugStream debug;
    click(Qt::MiddleButton, QPoint(730, 310));
    const QPoint global = m_page.mapToGlobal(QPoint(730, 310));
    const QStringList expected{
        QStringLiteral("Middle mouse button pressed!"), QStringLiteral("Local Position: QPoint(730,310)"),
        QStringLiteral("Global Position: QPoint(%1,%2)").arg(global.x()).arg(global.y()),
        QStringLiteral("open local File Model!")};
    EXPECT_EQ(debug.lines(), expected);
}

TEST(WidgetTab1MetaObjectTest, HasOneSignalAndOneSlotAndNothingElse)
{
    const QMetaObject &meta = WidgetTab1::staticMetaObject;
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    EXPECT_EQ(signal.methodType(), QMetaMethod::Signal);
    EXPECT_EQ(signal.methodSignature(), QByteArray("sigSetPicJD(double)"));
    const QMetaMethod slot = meta.method(meta.methodOffset() + 1);
    EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
    EXPECT_EQ(slot.methodSignature(), QByteArray("onSetPicJD(double)"));
}

} // namespace
