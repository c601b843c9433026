#include "simulator/bench/BenchPaths.h"
#include "simulator/bench/BusSession.h"
#include "simulator/bench/ModelOnBus.h"
#include "simulator/bench/ProbeClient.h"
#include "simulator/bench/XvfbSession.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

namespace {

constexpr int startLimitMs = 20000;
constexpr int updateLimitMs = 60000;
constexpr int closeLimitMs = 10000;

struct Options
{
    QString model;
    QString image;
    /// Holds whatever both sides see under the same name: the bus, the probe, standard streams.
    QString stage;
    QString home;
    /// Starts the controller as the user that the program runs as.
    QStringList asUser;
    QStringList command;
};

Options read(const QStringList &arguments)
{
    const auto option = [](const char *name, const char *description) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description), QStringLiteral("value"));
    };
    const auto model = option("model", "The model of the simulated device.");
    const auto image = option("image", "What the device has to have received in the end.");
    const auto stage = option("stage", "A folder that the program sees under the same name.");
    const auto home = option("home", "The user's home, as the program sees it.");
    const auto user = option("user", "The number of the user that the program runs as.");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Updates a simulated device with the program that a command starts."));
    parser.addOptions({model, image, stage, home, user});
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("Starts the installed program."));
    parser.process(arguments);

    const QString id = parser.value(user);
    const QStringList asUser{QStringLiteral("setpriv"), QStringLiteral("--reuid=") + id,
                             QStringLiteral("--regid=") + id, QStringLiteral("--clear-groups")};
    return {parser.value(model),         parser.value(image), parser.value(stage), parser.value(home), asUser,
            parser.positionalArguments()};
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Launch launchOf(const Options &options, const QString &display)
{
    const QString stage = options.stage + QLatin1Char('/');
    QProcessEnvironment environment;
    const auto set = [&](const char *name, const QString &value) {
        environment.insert(QLatin1String(name), value);
    };
    set("PATH", QStringLiteral("/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"));
    set("HOME", options.home);
    set("LC_ALL", QStringLiteral("en_US.UTF-8"));
    set("DISPLAY", display);
    set("QT_PLUGIN_PATH", stage + QLatin1String("plugins"));
    set("QT_QPA_GENERIC_PLUGINS", QStringLiteral("quillprobe"));
    set("QUILLMARSH_PROBE_PORT_FILE", stage + QLatin1String("probe-port"));
    QStringList command = options.command;
    const QString program = command.takeFirst();
    return {program,
            command,
            options.stage,
            environment,
            stage + QLatin1String("stdout"),
            stage + QLatin1String("stderr")};
}

/// What a person does and sees; empty when all went well.
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
    const QString burned = options.stage + QLatin1String("/burned.img");
    const QByteArray expected = contentsOf(options.image);
    if (!bus.saveImage(options.model, burned) || expected.isEmpty() || contentsOf(burned) != expected)
        return QStringLiteral("the device has not received the server's image");
    if (!probe.close(QStringLiteral("BackgroundWidget")) || bus.waitForExit(closeLimitMs) != 0)
        return QStringLiteral("the window's close did not end the program with 0");
    return {};
}

QString run(const Options &options)
{
    const QString description = options.stage + QLatin1String("/bus.json");
    QFile file(description);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(ModelOnBus::describe({ModelOnBus::application(options.model)})) < 0)
        return description + QLatin1String(": ") + file.errorString();
    file.close();

    XvfbSession display;
    if (!display.start())
        return display.errorText();
    BusSession bus;
    if (!bus.startController(options.asUser + QStringList{QStringLiteral("umockdev-wrapper"),
                                                          BenchPaths::busController(),
                                                          QStringLiteral("--description"), description}) ||
        !bus.run(launchOf(options, display.display())))
        return bus.errorText();
    ProbeClient probe;
    if (!probe.connectThrough(options.stage + QLatin1String("/probe-port"), startLimitMs))
        return probe.errorText() + QString::fromUtf8(contentsOf(options.stage + QLatin1String("/stderr")));
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
