#include "widgets/CustomComboBox.h"

#include "tests/common/RecordedDebugStream.h"
#include "widgets/CustomItemDelegate.h"

#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QColor white(Qt::white);
const QColor arrowBlue(45, 99, 167);

/// Expects a pixel that is half covered by a line, because the line is one pixel wide and on the pixel's
/// edge.
void expectHalf(const QColor &pixel, const QColor &over, const QColor &under)
{
    EXPECT_NEAR(pixel.red(), (over.red() + under.red()) / 2, 3);
    EXPECT_NEAR(pixel.green(), (over.green() + under.green()) / 2, 3);
    EXPECT_NEAR(pixel.blue(), (over.blue() + under.blue()) / 2, 3);
}

class CustomComboBoxTest : public testing::Test
{
protected:
    CustomComboBoxTest()
    {
        m_box.setFixedSize(61, 27);
        m_box.addItem(QStringLiteral("USB"));
        m_box.move(100, 100);
        m_box.show();
    }

    void enter()
    {
        QEvent event(QEvent::Enter);
        QCoreApplication::sendEvent(&m_box, &event);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&m_box, &event);
    }
    QImage picture() { return m_box.grab().toImage(); }
    /// Returns whether the active arrow is shown: its background is blue, that of the other one is white.
    bool arrowIsActive() { return picture().pixelColor(38, 4) == arrowBlue; }

    CustomComboBox m_box;
};

TEST_F(CustomComboBoxTest, TheArrowIsPlainWhileTheListIsClosedAndTheMouseElsewhere)
{
    EXPECT_EQ(picture().pixelColor(38, 4), white);
    EXPECT_FALSE(arrowIsActive());
}

TEST_F(CustomComboBoxTest, TheArrowIsActiveWhileTheMouseIsOverTheBox)
{
    enter();
    EXPECT_TRUE(m_box.property("hover").toBool());
    EXPECT_EQ(m_box.cursor().shape(), Qt::PointingHandCursor);
    EXPECT_TRUE(arrowIsActive());
    leave();
    EXPECT_FALSE(m_box.property("hover").toBool());
    EXPECT_FALSE(arrowIsActive());
}

TEST_F(CustomComboBoxTest, WithTheListOpenAndTheMouseOutsideTheArrowIsStillActive)
{
    m_box.showPopup();
    leave();
    EXPECT_TRUE(arrowIsActive());
    m_box.hidePopup();
    EXPECT_FALSE(arrowIsActive());
}

TEST_F(CustomComboBoxTest, OpeningAndClosingTheListIsReported)
{
    const RecordedDebugStream debug;
    m_box.showPopup();
    EXPECT_EQ(debug.count(QStringLiteral("Dropdown is now visible")), 1);
    EXPECT_EQ(debug.count(QStringLiteral("Dropdown is now hidden")), 0);
    m_box.hidePopup();
    EXPECT_EQ(debug.count(QStringLiteral("Dropdown is now hidden")), 1);
}

TEST_F(CustomComboBoxTest, TheArrowFillsTheBottomRightCornerTwoPixelsSmallerThanItsImage)
{
    enter();
    const QImage drawn = picture();
    // 27 x 27, drawn at (35, 1) into 25 x 25.
    EXPECT_EQ(drawn.pixelColor(34, 13), white);
    EXPECT_EQ(drawn.pixelColor(35, 13), arrowBlue);
    EXPECT_EQ(drawn.pixelColor(58, 13), arrowBlue);
    expectHalf(drawn.pixelColor(60, 13), QColor(165, 172, 178), m_box.palette().window().color());
    EXPECT_EQ(drawn.pixelColor(40, 2), arrowBlue);
    EXPECT_EQ(drawn.pixelColor(40, 24), arrowBlue);
    expectHalf(drawn.pixelColor(40, 26), QColor(165, 172, 178), m_box.palette().window().color());
}

TEST_F(CustomComboBoxTest, OnlyTheArrowsPartOfTheBorderIsDrawnASecondTime)
{
    enter();
    const QImage drawn = picture();
    const QColor border(165, 172, 178);
    expectHalf(drawn.pixelColor(1, 13), border, white);
    expectHalf(drawn.pixelColor(20, 1), border, white);
    expectHalf(drawn.pixelColor(59, 13), border, arrowBlue);
    expectHalf(drawn.pixelColor(40, 1), border, arrowBlue);
}

TEST_F(CustomComboBoxTest, TheTextIsArial10FivePixelsFromTheLeftInTheMiddle)
{
    QImage expected(61, 27, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::black);
    painter.setFont(QFont(QStringLiteral("Arial"), 10));
    painter.drawText(QRect(5, 0, 26, 27), Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("USB"));
    painter.end();
    const QRect inside(3, 3, 30, 21);
    EXPECT_EQ(picture().convertToFormat(QImage::Format_RGB32).copy(inside), expected.copy(inside));
}

TEST_F(CustomComboBoxTest, VeryLongItemTextIsCutThirtyPixelsBeforeTheRightEdge)
{
    m_box.setItemText(0, QString(40, QLatin1Char('W')));
    const QImage drawn = picture();
    bool inked = false;
    for (int y = 3; y < 24; ++y) {
        inked = inked || drawn.pixelColor(30, y) != white;
        for (int x = 31; x < 35; ++x)
            ASSERT_EQ(drawn.pixelColor(x, y), white) << x << ", " << y;
    }
    EXPECT_TRUE(inked) << "the text reaches the cut";
}

TEST_F(CustomComboBoxTest, WithOneItemTheListIs26PixelsHigh)
{
    EXPECT_EQ(m_box.itemHeight(), 26);
    m_box.showPopup();
    EXPECT_EQ(m_box.view()->height(), 26);
    EXPECT_EQ(m_box.view()->visualRect(m_box.model()->index(0, 0)).height(), 26);
}

TEST_F(CustomComboBoxTest, WithTwoItemsTheListIs52PixelsHighTwoRowsOf26)
{
    m_box.addItem(QStringLiteral("HID"));
    m_box.setItemHeight(52);
    m_box.listView()->setFixedHeight(52);
    m_box.showPopup();
    EXPECT_EQ(m_box.itemHeight(), 52);
    EXPECT_EQ(m_box.view()->height(), 52);
    EXPECT_EQ(m_box.view()->viewport()->height(), 52);
    EXPECT_EQ(m_box.view()->visualRect(m_box.model()->index(0, 0)),
              QRect(0, 0, m_box.view()->viewport()->width(), 26));
    EXPECT_EQ(m_box.view()->visualRect(m_box.model()->index(1, 0)).top(), 26);
}

TEST_F(CustomComboBoxTest, TheRowsAreFlatAndGrey)
{
    m_box.addItem(QStringLiteral("HID"));
    m_box.listView()->setFixedHeight(52);
    m_box.showPopup();
    const QImage rows = m_box.view()->viewport()->grab().toImage();
    EXPECT_EQ(rows.pixelColor(rows.width() - 4, 30), QColor(240, 240, 240));
    EXPECT_EQ(rows.pixelColor(rows.width() - 4, 49), QColor(240, 240, 240));
}

TEST_F(CustomComboBoxTest, TheListIsItsOwnViewWithItsOwnDelegateAlsoUnderAStyleSheet)
{
    QWidget ground;
    ground.setStyleSheet(QStringLiteral("background-color: white;"));
    m_box.setParent(&ground);
    ground.show();
    EXPECT_EQ(m_box.view(), m_box.listView());
    auto *delegate = m_box.listView()->itemDelegate();
    EXPECT_NE(dynamic_cast<CustomComboBox::CustomItemDelegate *>(delegate), nullptr);
    EXPECT_EQ(delegate->parent(), &m_box);
    EXPECT_EQ(m_box.listView()->spacing(), 0);
    EXPECT_TRUE(m_box.hasMouseTracking());
    m_box.setParent(nullptr);
}

} // namespace
