#include "app/CommandLine.h"
#include "app/Departure.h"
#include "app/MainWindowLook.h"
#include "app/ProgramArguments.h"
#include "app/SystemCountry.h"
#include "app/bringToForeground.h"
#include "support/Diagnostics.h"
#include "widgets/BackgroundWidget.h"

#include <QApplication>

namespace {

int run(const ProgramArguments &arguments)
{
    Departure departure;
    BackgroundWidget background(isSystemCountryChina());
    QObject::connect(&background, &BackgroundWidget::sigCloseAsked, &departure, [&] {
        if (departure.closeAsked(&background))
            background.allowClose();
    });
    background.show();

    const LaunchOptions launch = parseCommandLine(arguments.count(), arguments.values().data());
    auto *mainWidget = new bringToForeground(&background, launch.isZN58Mode, launch.isTessilonixMode,
                                             launch.wantedModelName);
    mainWidget->show();
    departure.askWhile([mainWidget] { return mainWidget->isWriting(); });

    const int exitCode = departure.runLoop();
    departure.settle(mainWidget, exitCode);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    Diagnostics::install();
    MainWindowLook::prepareScaling();
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillmarsh"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLMARSH_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    MainWindowLook::applyProgramFont(isSystemCountryChina());
    MainWindowLook::applyProgramIcon();

    const int exitCode = run(ProgramArguments(argc, argv));
    Diagnostics::flush(100);
    return exitCode;
}
