#include "cli/commands/Options.h"

#include "cli/output/ExitCode.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace {

const QLatin1String usageText(
    "Usage: quillmarsh-cli COMMAND [OPTIONS]\n"
    "\n"
    "Commands:\n"
    "  list             shows the connected devices\n"
    "  update           updates a device\n"
    "  check            shows whether everything that an update needs is there\n"
    "  manifest verify  checks a firmware manifest, for makers\n"
    "  report           writes a file for support with what the program finds here\n"
    "\n"
    "\"quillmarsh-cli COMMAND --help\" shows the options of a command; --version the version.\n"
    "\n"
    "Exit codes: 0 done; 1 the update failed and the device may need another one; 2 wrong usage;\n"
    "3 no matching device in time; 4 the firmware could not be fetched or is not what was promised;\n"
    "5 a tool, a right or a folder is missing; 6 another copy is updating; 130 interrupted.\n"
    "After 2 to 6 and 130 the device is untouched.\n");

ParsedCommandLine usageError(const QString &problem)
{
    return {std::nullopt, problem + QLatin1String("\n\n") + usageText, static_cast<int>(ExitCode::Usage)};
}

/// Parses the options of one command.
class CommandParser
{
public:
    explicit CommandParser(Options::Command command) : m_command(command)
    {
        m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        add("help", "Shows this help.");
        add("lang", "Uses English (en) or Chinese (zh).", "LANGUAGE");
        add("verbose", "Writes diagnostics to standard error.");
        add("json", "Writes events for a program, one JSON object on each line.");
        add("log",
            command == Options::Command::Report ? "Includes this log instead of the newest one."
                                                : "Appends the log to FILE.",
            "FILE");
        if (command == Options::Command::List)
            add("watch", "Goes on to show devices that come and go.");
        if (command == Options::Command::Update)
            addUpdateOptions();
        if (command == Options::Command::Check)
            add("model", "Checks what an update of this model needs.", "NAME");
        if (command == Options::Command::VerifyManifest)
            add("download", "Fetches each image and checks its sum and signature.");
    }

    ParsedCommandLine parse(const QStringList &arguments, Options options);

private:
    void add(const char *name, const char *description, const char *value = "")
    {
        m_parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value)});
    }
    void addUpdateOptions()
    {
        add("model", "Updates this model only; needed for a device that waits in its bootloader.", "NAME");
        add("file", "Writes this image instead of the server's.", "IMAGE");
        add("md5", "Requires the image of --file to have this MD5 sum.", "SUM");
        add("require-signature", "Writes the image of --file only if its maker has signed it.");
        add("write-type", "Writes over usb or hid.", "TYPE");
        add("no-reset", "Does not restart the device afterwards.");
        add("wait", "Waits up to this long for a device.", "SECONDS");
        add("repeat", "Updates one device after the other until interrupted.");
        add("yes", "Does not ask before writing.");
    }
    QString value(const char *name) const { return m_parser.value(QLatin1String(name)); }
    bool isSet(const char *name) const { return m_parser.isSet(QLatin1String(name)); }
    QString readUpdateOptions(Options &options) const;
    QString readCommon(Options &options) const;

    QString help() const;

    const Options::Command m_command;
    QCommandLineParser m_parser;
};

QString nameOf(Options::Command command)
{
    switch (command) {
    case Options::Command::List:
        return QStringLiteral("list");
    case Options::Command::Update:
        return QStringLiteral("update");
    case Options::Command::Check:
        return QStringLiteral("check");
    case Options::Command::VerifyManifest:
        return QStringLiteral("manifest verify");
    case Options::Command::Report:
        return QStringLiteral("report");
    }
    return {};
}

/// Returns the parser's help. Its first line is replaced: the parser does not know the commands.
QString CommandParser::help() const
{
    const QString text = m_parser.helpText();
    QString file;
    if (m_command == Options::Command::VerifyManifest)
        file = QStringLiteral(" [MANIFEST]");
    if (m_command == Options::Command::Report)
        file = QStringLiteral(" [FILE]");
    return QStringLiteral("Usage: quillmarsh-cli %1 [OPTIONS]").arg(nameOf(m_command)) + file +
           text.mid(text.indexOf(QLatin1Char('\n')));
}

/// Reads the options of "update". Returns what is wrong with their values; empty if nothing is.
QString CommandParser::readUpdateOptions(Options &options) const
{
    options.model = value("model");
    options.imageFile = value("file");
    options.imageSum = value("md5").toLower();
    options.writeType = value("write-type").toUpper();
    options.requireSignature = isSet("require-signature");
    options.noReset = isSet("no-reset");
    options.repeat = isSet("repeat");
    options.yes = isSet("yes");
    if (isSet("wait")) {
        bool ok = false;
        options.waitSeconds = value("wait").toInt(&ok);
        if (!ok || options.waitSeconds < 0)
            return QStringLiteral("--wait needs a number of seconds.");
    }
    if (isSet("write-type") && options.writeType != QLatin1String("USB") &&
        options.writeType != QLatin1String("HID"))
        return QStringLiteral("--write-type is usb or hid.");
    if (isSet("md5") && !isSet("file"))
        return QStringLiteral("--md5 goes with --file.");
    static const QRegularExpression sum(QStringLiteral("^[0-9a-f]{32}\\z"));
    if (isSet("md5") && !sum.match(options.imageSum).hasMatch())
        return QStringLiteral("--md5 needs 32 hexadecimal digits.");
    if ((isSet("file") && options.imageFile.isEmpty()) || (isSet("model") && options.model.isEmpty()))
        return QStringLiteral("--file and --model need a name.");
    return {};
}

QString CommandParser::readCommon(Options &options) const
{
    options.json = isSet("json");
    options.verbose = isSet("verbose");
    options.logFile = value("log");
    if (isSet("log") && options.logFile.isEmpty())
        return QStringLiteral("--log needs a name.");
    if (isSet("lang")) {
        if (value("lang") != QLatin1String("en") && value("lang") != QLatin1String("zh"))
            return QStringLiteral("--lang is en or zh.");
        options.language =
            value("lang") == QLatin1String("zh") ? Texts::Language::Chinese : Texts::Language::English;
    }
    return {};
}

ParsedCommandLine CommandParser::parse(const QStringList &arguments, Options options)
{
    options.command = m_command;
    // The parser skips the first argument, which it takes for the program's name.
    if (!m_parser.parse(QStringList(QStringLiteral("quillmarsh-cli")) + arguments))
        return usageError(m_parser.errorText());
    if (isSet("help"))
        return {std::nullopt, help(), 0};
    QString problem = readCommon(options);
    if (problem.isEmpty() && m_command == Options::Command::Update)
        problem = readUpdateOptions(options);
    options.watch = m_command == Options::Command::List && isSet("watch");
    if (m_command == Options::Command::Check)
        options.model = value("model");
    QStringList rest = m_parser.positionalArguments();
    if (m_command == Options::Command::VerifyManifest) {
        options.download = isSet("download");
        if (!rest.isEmpty())
            options.manifest = rest.takeFirst();
    }
    if (m_command == Options::Command::Report && !rest.isEmpty())
        options.reportFile = rest.takeFirst();
    if (problem.isEmpty() && options.json && options.reportFile == QLatin1String("-"))
        problem = QStringLiteral("--json writes events where the report would go: name a file.");
    if (problem.isEmpty() && !rest.isEmpty())
        problem = QStringLiteral("Unexpected argument: ") + rest.first();
    if (!problem.isEmpty())
        return usageError(problem);
    return {options, {}, 0};
}

} // namespace

ParsedCommandLine parseOptions(const QStringList &arguments, Texts::Language systemLanguage,
                               const QString &version)
{
    Options options;
    options.language = systemLanguage;
    const QString command = arguments.value(0);
    if (command == QLatin1String("--version"))
        return {std::nullopt, QStringLiteral("quillmarsh-cli %1\n").arg(version), 0};
    if (command == QLatin1String("--help"))
        return {std::nullopt, usageText, 0};
    if (command == QLatin1String("list"))
        return CommandParser(Options::Command::List).parse(arguments.mid(1), options);
    if (command == QLatin1String("update"))
        return CommandParser(Options::Command::Update).parse(arguments.mid(1), options);
    if (command == QLatin1String("check"))
        return CommandParser(Options::Command::Check).parse(arguments.mid(1), options);
    if (command == QLatin1String("report"))
        return CommandParser(Options::Command::Report).parse(arguments.mid(1), options);
    if (command == QLatin1String("manifest")) {
        if (arguments.value(1) != QLatin1String("verify"))
            return usageError(QStringLiteral("\"manifest\" needs \"verify\"."));
        return CommandParser(Options::Command::VerifyManifest).parse(arguments.mid(2), options);
    }
    return usageError(command.isEmpty() ? QStringLiteral("A command is needed.")
                                        : QStringLiteral("Unknown command: ") + command);
}
