#include "widgets/FocusRing.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

/// A window with two boxes that has the focus.
template <typename Window>
struct TwoBoxes
{
    TwoBoxes()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(first);
        layout->addWidget(second);
        window.show();
        QApplication::setActiveWindow(&window);
        first->setFocus();
    }

    Window window;
    QCheckBox *first = new QCheckBox(QStringLiteral("first"));
    QCheckBox *second = new QCheckBox(QStringLiteral("second"));
};

TEST(FocusRingTest, AppearsWithTheKeyboardAndGoesWithTheMouse)
{
    const FocusRing ring;
    TwoBoxes<QWidget> boxes;
    EXPECT_FALSE(ring.isAround(boxes.first));
    QTest::keyClick(boxes.first, Qt::Key_Tab);
    EXPECT_TRUE(ring.isAround(boxes.second));
    QTest::keyClick(boxes.second, Qt::Key_Tab);
    EXPECT_TRUE(ring.isAround(boxes.first));
    QTest::mouseClick(boxes.second, Qt::LeftButton);
    EXPECT_FALSE(ring.isAround(boxes.first));
    EXPECT_FALSE(ring.isAround(boxes.second));
    QTest::keyClick(boxes.second, Qt::Key_Space);
    EXPECT_TRUE(ring.isAround(boxes.second));
}

TEST(FocusRingTest, OutlivesTheWindowThatItWasDrawnIn)
{
    const FocusRing ring;
    {
        TwoBoxes<QWidget> gone;
        QTest::keyClick(gone.first, Qt::Key_Tab);
        ASSERT_TRUE(ring.isAround(gone.second));
    }
    TwoBoxes<QWidget> next;
    QTest::keyClick(next.first, Qt::Key_Tab);
    EXPECT_TRUE(ring.isAround(next.second));
}

TEST(FocusRingTest, LeavesDialogsAlone)
{
    const FocusRing ring;
    TwoBoxes<QDialog> boxes;
    QTest::keyClick(boxes.first, Qt::Key_Tab);
    EXPECT_FALSE(ring.isAround(boxes.second));
}

} // namespace
