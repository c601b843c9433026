#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    // The build lists the tests, and needs no display for it.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    // The toolkit makes its gesture manager for the first scroll area, and the events of every thread look
    // at it: it is there before a test starts one, as it is in the program.
    QWidget().grabGesture(Qt::PanGesture);
    return RUN_ALL_TESTS();
}
