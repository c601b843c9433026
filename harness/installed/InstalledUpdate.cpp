#include "harness/BuildPaths.h"
#include "harness/session/BusSession.h"
#include "harness/session/ModelOnBus.h"
#include "harness/session/XvfbSession.h"
#include "harness/window/ProbeClient.h"
#include "simulator/files/WholeFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

constexpr int startLimitMs = 60000;
constexpr int updateLimitMs = 120000;
constexpr int closeLimitMs = 10000;

struct Options
{
    QString model;
    QString image;
    /// A folder with the files that both sides access under the same path: the bus, the probe, standard
    /// streams.
    QString stage;
    /// The program's home and user; empty for a Windows program, whose Wine prefix determines them.
    QString home;
    QString user;
    /// The controller of the bus for Windows programs.
    QString listedController;
    QStringList command;
    /// The command starts quillmarsh-cli, not the window.
    bool withoutWindow = false;

    bool isWindows() const { return !listedController.isEmpty(); }
    QString inStage(const char *name) const { return stage + QLatin1Char('/') + QLatin1String(name); }
};

Options read(const QStringList &arguments)
{
    const auto option = [](const char *name, const char *description) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description), QStringLiteral("value"));
    };
    const auto model = option("model", "The model of the simulated device.");
    const auto image = option("image", "The image that the device must have received in the end.");
    const auto stage = option("stage", "A folder that the program sees under the same path.");
    const auto home = option("home", "The home folder of the user, as the program sees it.");
    const auto user = option("user", "The id of the user as whom the program runs.");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Updates a simulated device with the program that a command starts."));
    const auto controller = option("listed-controller", "For a Windows program: the controller of its bus.");
    const QCommandLineOption cli(QStringLiteral("cli"), QStringLiteral("The command starts quillmarsh-cli."));
    parser.addOptions({model, image, stage, home, user, controller, cli});
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("Starts the installed program."));
    parser.process(arguments);

    return {parser.value(model), parser.value(image),      parser.value(stage),          parser.value(home),
            parser.value(user),  parser.value(controller), parser.positionalArguments(), parser.isSet(cli)};
}

/// Runs the controller as the same user as the program, because the program must be able to use the bus's
/// files.
QStringList controllerOf(const Options &options, const QString &description)
{
    const QStringList about{QStringLiteral("--description"), description};
    if (options.isWindows())
        return QStringList{options.listedController} + about;
    return QStringList{QStringLiteral("setpriv"),
                       QStringLiteral("--reuid=") + options.user,
                       QStringLiteral("--regid=") + options.user,
                       QStringLiteral("--clear-groups"),
                       QStringLiteral("umockdev-wrapper"),
                       BuildPaths::busController()} +
           about;
}

QProcessEnvironment linuxEnvironment(const Options &options)
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"),
                       QStringLiteral("/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"));
    environment.insert(QStringLiteral("HOME"), options.home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("en_US.UTF-8"));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), options.inStage("plugins"));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
    environment.insert(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"), options.inStage("probe-port"));
    return environment;
}

QProcessEnvironment wineEnvironment(const Options &options)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // Wine passes variables that begin with "QT_" to a Windows program only if they have this prefix.
    environment.insert(QStringLiteral("WINEQT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
    environment.insert(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"),
                       QLatin1String("Z:") + options.inStage("probe-port"));
    return environment;
}

Launch launchOf(const Options &options, const QString &display)
{
    QProcessEnvironment environment =
        options.isWindows() ? wineEnvironment(options) : linuxEnvironment(options);
    if (!display.isEmpty())
        environment.insert(QStringLiteral("DISPLAY"), display);
    QStringList command = options.command;
    const QString program = command.takeFirst();
    const QString folder = options.isWindows() ? QFileInfo(command.constLast()).path() : options.stage;
    return {program, command, folder, environment, options.inStage("stdout"), options.inStage("stderr")};
}

QString burnProblem(const Options &options, BusSession &bus)
{
    const QString burned = options.inStage("burned.img");
    const QByteArray expected = WholeFile::read(options.image);
    if (!bus.saveImage(options.model, burned) || expected.isEmpty() || WholeFile::read(burned) != expected)
        return QStringLiteral("the device has not received the server's image");
    return {};
}

/// Runs quillmarsh-cli, which must end with 0. Returns its last event; empty if it failed.
QJsonObject lastEventOf(const QString &command, const Options &options, BusSession &bus)
{
    Launch launch = launchOf(options, QString());
    launch.arguments += QStringList{command, QStringLiteral("--json")};
    if (!bus.run(launch) || bus.waitForExit(updateLimitMs) != 0)
        return {};
    const QByteArray output = WholeFile::read(options.inStage("stdout")).trimmed();
    return QJsonDocument::fromJson(output.mid(output.lastIndexOf('\n') + 1)).object();
}

/// Updates the device as another program does with quillmarsh-cli. Returns the problem, or an empty string.
QString updateWithoutWindow(const Options &options, BusSession &bus)
{
    const auto said = [&options] {
        return QString::fromUtf8(WholeFile::read(options.inStage("stdout")).right(1000) +
                                 WholeFile::read(options.inStage("stderr")).right(1000));
    };
    const QJsonObject device = lastEventOf(QStringLiteral("list"), options, bus);
    if (device.value(QLatin1String("model")) != options.model ||
        device.value(QLatin1String("state")) != QLatin1String("ready"))
        return QStringLiteral("the device is not listed: ") + said();
    const QJsonObject result = lastEventOf(QStringLiteral("update"), options, bus);
    if (result.value(QLatin1String("outcome")) != QLatin1String("succeeded"))
        return QStringLiteral("the update did not succeed: ") + said();
    return burnProblem(options, bus);
}

/// Updates the device as a user would. Returns the problem, or an empty string.
QString update(const Options &options, BusSession &bus, ProbeClient &probe)
{
    const QString start = QStringLiteral("startButton");
    if (!probe.waitForText(QStringLiteral("deviceModelLabel"), options.model, startLimitMs) ||
        !probe.waitForEnabled(start, true, startLimitMs) || !probe.click(start) ||
        !probe.waitForEnabled(start, false, startLimitMs) ||
        !probe.waitForEnabled(start, true, updateLimitMs))
        return probe.errorText();
    const QString title = probe.text(QStringLiteral("stateTitleLabel"));
    if (title != QLatin1String("CurrentStatus: Upgrade Successful"))
        return QStringLiteral("the title is ") + title;
    const QString problem = burnProblem(options, bus);
    if (!problem.isEmpty())
        return problem;
    if (!probe.close(QStringLiteral("BackgroundWidget")) || bus.waitForExit(closeLimitMs) != 0)
        return QStringLiteral("the program did not end with 0 when its window was closed");
    return {};
}

QString run(const Options &options)
{
    const QString description = options.inStage("bus.json");
    if (!WholeFile::write(description, ModelOnBus::describe({ModelOnBus::application(options.model)})))
        return QStringLiteral("cannot write ") + description;

    BusSession bus;
    if (!bus.startController(controllerOf(options, description)))
        return bus.errorText();
    if (options.withoutWindow)
        return updateWithoutWindow(options, bus);
    XvfbSession display;
    if (!display.start())
        return display.errorText();
    if (!bus.run(launchOf(options, display.display())))
        return bus.errorText();
    ProbeClient probe;
    if (!probe.connectThrough(options.inStage("probe-port"), startLimitMs))
        return probe.errorText() + QString::fromUtf8(WholeFile::read(options.inStage("stderr")));
    return update(options, bus, probe);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Options options = read(QCoreApplication::arguments());
    const QString problem = options.command.isEmpty() ? QStringLiteral("no command") : run(options);
    QTextStream(stdout) << (problem.isEmpty() ? options.model + QLatin1String(" was updated and the program "
                                                                              "ended with 0.")
                                              : QLatin1String("FAILED: ") + problem)
                        << '\n';
    return problem.isEmpty() ? 0 : 1;
}
