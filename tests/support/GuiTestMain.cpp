#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    // The build lists the tests, and needs no display for it.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
