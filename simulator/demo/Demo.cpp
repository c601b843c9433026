#include "simulator/bench/UpdateScenario.h"
#include "simulator/demo/DemoOptions.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>
#include <QThread>

namespace {

constexpr int updateLimitMs = 60000;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QJsonObject step(const char *name, const QJsonValue &value)
{
    return {{QLatin1String(name), value}};
}

/// A flasher that takes its time, so that there is something to see.
QJsonDocument unhurriedFlasher()
{
    QJsonArray burn;
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        burn.append(
            step("print", QStringLiteral("Upgrade fwc: image.target.%1\n").arg(QLatin1String(partition))));
        burn.append(step("sleepMs", 400));
    }
    burn.append(step("burn", true));
    burn.append(step("success", true));
    const QJsonArray reset{step("reset", true)};
    return QJsonDocument(QJsonObject{{QStringLiteral("runs"), QJsonArray{burn, reset}}});
}

bool isOver(const QString &title)
{
    return title.contains(QLatin1String("Upgrade Successful")) ||
           title.contains(QStringLiteral("升级成功")) ||
           title.contains(QLatin1String("ailed"), Qt::CaseInsensitive) ||
           title.contains(QStringLiteral("失败"));
}

/// The title at the end of the update; the last one seen when it does not end in time.
QString titleAtTheEnd(UpdateScenario &scenario)
{
    const QString label = QStringLiteral("stateTitleLabel");
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < updateLimitMs && scenario.bus.programState().running) {
        const QString title = scenario.probe.text(label);
        if (isOver(title) && scenario.probe.isEnabled(QStringLiteral("startButton")))
            return title;
        QThread::msleep(50);
    }
    return scenario.probe.text(label);
}

/// A whole update without a person; returns whether all of it went as it should.
bool updateByItself(UpdateScenario &scenario, const QString &pictures)
{
    const auto picture = [&](const char *name) {
        scenario.probe.grabScreen(QDir(pictures).absoluteFilePath(QLatin1String(name)));
    };
    if (!scenario.probe.waitForText(QStringLiteral("deviceModelLabel"), scenario.model(), 10000)) {
        out() << scenario.probe.errorText() << '\n';
        return false;
    }
    picture("before.png");
    if (!scenario.pressStart()) {
        out() << scenario.errorText() << '\n';
        return false;
    }
    if (scenario.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 48,
                                    updateLimitMs))
        picture("during.png");
    const QString title = titleAtTheEnd(scenario);
    picture("after.png");
    const bool sameBytes = scenario.burned() == scenario.image();

    out() << "\n== Log\n" << scenario.program.updateLog();
    out() << "\n== Result\n";
    out() << "The device received " << scenario.burned().size() << " bytes, "
          << (sameBytes ? "the same as" : "other than") << " the server's " << scenario.image().size()
          << ".\n";
    out() << "Pictures: " << QDir(pictures).absolutePath() << "/{before,during,after}.png\n";
    out() << "Title: " << title << '\n';
    const bool success =
        title.contains(QLatin1String("Upgrade Successful")) || title.contains(QStringLiteral("升级成功"));
    return success && sameBytes;
}

/// Leaves the window to the person and waits until they close it.
bool watchAPerson(UpdateScenario &scenario)
{
    out() << "The window is open: press its start button, and close it when you have seen enough.\n";
    out().flush();
    while (scenario.bus.programState().running)
        QThread::msleep(200);
    out() << "\n== Log\n" << scenario.program.updateLog();
    return scenario.bus.programState().exitCode == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const DemoOptions options = DemoOptions::read(QCoreApplication::arguments());
    QDir().mkpath(options.pictures);

    UpdateScenario scenario(QStringLiteral("DevMaa"));
    scenario.onExistingDisplay = !options.automatic;
    scenario.screen = QSize(800, 490);
    scenario.program.setLocale(options.locale);
    scenario.program.setScript(QStringLiteral("upgcmd.exe"), unhurriedFlasher());
    if (!scenario.start()) {
        out() << scenario.errorText() << '\n';
        return 1;
    }
    const bool well = options.automatic ? updateByItself(scenario, options.pictures) : watchAPerson(scenario);
    if (options.automatic)
        scenario.closeWindow();
    return well ? 0 : 1;
}
