#include "tests/support/AnotherAttempt.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    // The build lists the tests, and needs no display for it.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    // By a name of our own, since Wine hands none of the toolkit's variables on.
    if (qEnvironmentVariableIsSet("QUILLMARSH_TEST_SCALE"))
        qputenv("QT_SCALE_FACTOR", qgetenv("QUILLMARSH_TEST_SCALE"));
    const QApplication application(argc, argv);
    const double scale = qEnvironmentVariable("QUILLMARSH_TEST_SCALE", QStringLiteral("1")).toDouble();
    if (!qFuzzyCompare(application.devicePixelRatio(), scale)) {
        qCritical("The screen is not scaled as it was asked for.");
        return 2;
    }
    // The toolkit makes its gesture manager for the first scroll area, and the events of every thread look
    // at it: it is there before a test starts one, as it is in the program.
    QWidget().grabGesture(Qt::PanGesture);
    return runTests();
}
