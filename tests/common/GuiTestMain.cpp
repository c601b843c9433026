#include "tests/common/AnotherAttempt.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    // The build lists the tests without a display.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    // A separate variable, because Wine does not pass Qt's variables on.
    if (qEnvironmentVariableIsSet("QUILLMARSH_TEST_SCALE"))
        qputenv("QT_SCALE_FACTOR", qgetenv("QUILLMARSH_TEST_SCALE"));
    const QApplication application(argc, argv);
    const double scale = qEnvironmentVariable("QUILLMARSH_TEST_SCALE", QStringLiteral("1")).toDouble();
    if (!qFuzzyCompare(application.devicePixelRatio(), scale)) {
        qCritical("The screen is not scaled as it was asked for.");
        return 2;
    }
    // Qt creates its gesture manager for the first scroll area, and the events of all threads access it. Like
    // the program, this creates it before a test starts a thread.
    QWidget().grabGesture(Qt::PanGesture);
    return runTests();
}
