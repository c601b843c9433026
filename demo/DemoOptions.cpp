#include "demo/DemoOptions.h"

#include "devices/models/ModelTable.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cstdlib>

namespace {

QCommandLineOption option(const char *name, const char *description, const char *value = "")
{
    return QCommandLineOption(QLatin1String(name), QLatin1String(description), QLatin1String(value));
}

[[noreturn]] void refuse(const QString &why)
{
    QTextStream(stderr) << why << '\n';
    std::exit(2);
}

bool isKnownModel(const QString &name)
{
    const ModelTable table;
    return std::any_of(table.rows().begin(), table.rows().end(),
                       [&](const ModelRow &row) { return name == row.name; });
}

bool isIapModel(const QString &name)
{
    const ModelTable table;
    return std::any_of(table.rows().begin(), table.rows().end(),
                       [&](const ModelRow &row) { return name == row.name && row.iapFlag != 0; });
}

void readLanguage(DemoOptions &options, const QString &code)
{
    options.chinese = code == QLatin1String("zh");
    if (!options.chinese && code != QLatin1String("en"))
        refuse(QStringLiteral("--lang takes en or zh, not ") + code);
}

void readMode(DemoOptions &options, const QString &mode, const QString &model)
{
    if (mode == QLatin1String("zn58")) {
        options.model = QStringLiteral("ZN58");
        options.programArguments = QStringList{QStringLiteral("ZN58UpDate")};
    } else if (mode == QLatin1String("tessilonix")) {
        if (!isKnownModel(model))
            refuse(QStringLiteral("--mode tessilonix takes the name of a model, such as DevMac"));
        options.model = model;
        options.programArguments = QStringList{QStringLiteral("TessilonixUpDate"), model};
    } else {
        refuse(QStringLiteral("--mode takes zn58 or tessilonix MODEL, not ") + mode);
    }
}

void readIapModel(DemoOptions &options, const QString &model)
{
    if (!isIapModel(model))
        refuse(QStringLiteral("--iap takes the name of a microcontroller model, such as DevMdq"));
    options.model = model;
    options.throughIapPanel = true;
}

void readLocalFile(DemoOptions &options, const QString &name)
{
    const QFileInfo file(name);
    if (!file.isFile() || !file.isReadable())
        refuse(QStringLiteral("--local takes a file, not ") + name);
    options.localFile = file.canonicalFilePath();
}

void readWindowsBuild(DemoOptions &options, const QString &folder)
{
    if (!QFileInfo(folder + QLatin1String("/bin/quillmarsh.exe")).isFile())
        refuse(QStringLiteral("--windows takes a build folder with the Windows program in it, not ") +
               folder);
    options.windowsBuild = QFileInfo(folder).canonicalFilePath();
}

void readReport(DemoOptions &options, const QString &name)
{
    QString problem;
    const std::optional<ReportedBus> reported = ReportedBus::read(name, &problem);
    if (!reported)
        refuse(problem);
    options.report = QFileInfo(name).canonicalFilePath();
    options.reported = *reported;
    options.chinese = reported->isChinese;
    if (!reported->model.isEmpty())
        options.model = reported->model;
}

} // namespace

DemoOptions DemoOptions::read(const QStringList &arguments)
{
    const auto automatic =
        option("auto", "Press Start and close the window automatically, on a display that nobody sees.");
    const auto language = option("lang", "Language of the window: en or zh.", "language");
    const auto mode =
        option("mode", "Start the window as a companion does: zn58, or tessilonix MODEL.", "mode");
    const auto bootloader =
        option("bootloader", "Show a device that waits in its bootloader: the window asks for its model.");
    const auto iap = option("iap", "Program this microcontroller model through the IAP panel.", "MODEL");
    const auto local =
        option("local", "Burn this file, chosen in the window, instead of the server's.", "file");
    const auto report = option("report", "Show the devices of this user's report.", "file");
    const auto fault = option("fault", "A fault of the firmware server; may be repeated.", "fault");
    const auto windows =
        option("windows", "Show the Windows program of this build folder, under Wine.", "folder");
    const auto cli = option("cli", "Show quillmarsh-cli in this terminal instead of the window.");
    const auto json = option("json", "With --cli: print only its events to standard output.");
    const auto pictures = option("pictures", "Folder for the screenshots.", "folder");
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Updates a simulated device with the real program."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("MODEL"), QStringLiteral("The model of --mode tessilonix."),
                                 QStringLiteral("[MODEL]"));
    parser.addOptions(
        {automatic, language, mode, bootloader, iap, local, report, fault, windows, cli, json, pictures});
    parser.process(arguments);

    DemoOptions options;
    options.automatic = parser.isSet(automatic) || qEnvironmentVariableIsEmpty("DISPLAY");
    options.inBootloader = parser.isSet(bootloader);
    options.serverFaults = parser.values(fault);
    if (parser.isSet(report))
        readReport(options, parser.value(report));
    if (parser.isSet(language))
        readLanguage(options, parser.value(language));
    if (parser.isSet(mode))
        readMode(options, parser.value(mode), parser.positionalArguments().value(0));
    if (parser.isSet(iap))
        readIapModel(options, parser.value(iap));
    if (parser.isSet(local))
        readLocalFile(options, parser.value(local));
    if (parser.isSet(pictures))
        options.pictures = parser.value(pictures);
    if (options.isLaunchMode() &&
        (options.inBootloader || options.throughIapPanel || !options.localFile.isEmpty()))
        refuse(QStringLiteral(
            "--bootloader, --iap and --local need controls of the window, which --mode hides"));
    if (options.throughIapPanel && options.inBootloader)
        refuse(
            QStringLiteral("a microcontroller has no such bootloader: use --iap or --bootloader, not both"));
    options.withoutWindow = parser.isSet(cli);
    if (!options.report.isEmpty() &&
        (options.withoutWindow || options.isLaunchMode() || options.inBootloader || options.throughIapPanel))
        refuse(QStringLiteral("--report decides what is connected and shows a window: do not combine it "
                              "with --cli, --mode, --bootloader or --iap"));
    options.json = parser.isSet(json);
    if (options.json && !options.withoutWindow)
        refuse(QStringLiteral("--json needs --cli"));
    if (options.withoutWindow && (options.isLaunchMode() || parser.isSet(windows)))
        refuse(QStringLiteral("--mode and --windows show a window: do not combine them with --cli"));
    if (parser.isSet(windows))
        readWindowsBuild(options, parser.value(windows));
    return options;
}
