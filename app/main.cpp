#include "app/CommandLine.h"
#include "app/Shutdown.h"
#include "app/SystemReport.h"
#include "app/bringToForeground.h"
#include "app/window/MainWindowAccess.h"
#include "app/window/MainWindowLook.h"
#include "support/log/Diagnostics.h"
#include "support/process/LibrarySearch.h"
#include "support/process/ProgramArguments.h"
#include "widgets/BackgroundWidget.h"
#include "widgets/FocusRing.h"

#include <QApplication>

namespace {

int run(const ProgramArguments &arguments)
{
    Shutdown shutdown;
    BackgroundWidget background(SystemReport::isCountryChina());
    QObject::connect(&background, &BackgroundWidget::sigCloseAsked, &shutdown, [&] {
        if (shutdown.requestClose(&background))
            background.allowClose();
    });
    background.show();

    const LaunchOptions launch = parseCommandLine(arguments.count(), arguments.values().data());
    auto *mainWidget = new bringToForeground(&background, launch.isZN58Mode, launch.isTessilonixMode,
                                             launch.wantedModelName);
    mainWidget->show();
    shutdown.askFirstWhile([mainWidget] { return mainWidget->isWriting(); });

    const int exitCode = shutdown.runLoop();
    shutdown.finish(mainWidget, exitCode);
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    LibrarySearch::excludeWorkingFolder();
    Diagnostics::install();
    MainWindowLook::prepareQt();
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quillmarsh"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLMARSH_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    MainWindowLook::applyProgramFont(SystemReport::isCountryChina());
    MainWindowLook::applyProgramIcon();
    MainWindowAccess::reportWindows();
    const FocusRing focusRing;

    const int exitCode = run(ProgramArguments(argc, argv));
    Diagnostics::flush(100);
    return exitCode;
}
