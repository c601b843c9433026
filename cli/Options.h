#pragma once

#include "checks/Texts.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct Options
{
    enum class Command { List, Update, Check, VerifyManifest, Report };

    Command command = Command::List;
    bool json = false;
    bool verbose = false;
    /// A file for the log, or with "report" the log that it includes; empty for none.
    QString logFile;
    Texts::Language language = Texts::Language::English;

    // list
    bool watch = false;

    // update and check
    QString model;

    // update
    QString imageFile;
    /// The image's MD5 sum as the user knows it; empty to trust the file.
    QString imageSum;
    /// "USB" or "HID"; empty for the control list's choice.
    QString writeType;
    /// Whether only an image with a verified signature is written.
    bool requireSignature = false;
    bool noReset = false;
    /// How long to wait for a device.
    int waitSeconds = 0;
    bool repeat = false;
    bool yes = false;

    // manifest verify
    /// An address or a file; empty for the program's own server.
    QString manifest;
    bool download = false;

    // report
    /// Empty for a name of its own in the working folder, "-" for standard output.
    QString reportFile;
};

/// What parsing came to: options, or a text and an exit code with which the program ends at once.
struct ParsedCommandLine
{
    std::optional<Options> options;
    QString text;
    int exitCode = 0;
};

/// Parses the arguments without the program's name. `systemLanguage` is used unless --lang says otherwise.
ParsedCommandLine parseOptions(const QStringList &arguments, Texts::Language systemLanguage,
                               const QString &version);
