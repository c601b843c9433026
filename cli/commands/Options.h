#pragma once

#include "checks/Texts.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The parsed command line.
struct Options
{
    enum class Command { List, Update, Check, VerifyManifest, Report };

    Command command = Command::List;
    bool json = false;
    bool verbose = false;
    /// The file to append the log to or, for "report", the log to include; empty if not set.
    QString logFile;
    Texts::Language language = Texts::Language::English;

    // list
    bool watch = false;

    // update and check
    QString model;

    // update
    QString imageFile;
    /// The MD5 sum that the image must have; empty if any image is accepted.
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
    /// Empty for a proposed name in the working folder, "-" for standard output.
    QString reportFile;
};

/// The result of parsing: options, or a text and an exit code with which the program ends at once.
struct ParsedCommandLine
{
    std::optional<Options> options;
    QString text;
    int exitCode = 0;
};

/// Parses the arguments without the program's name. `systemLanguage` is used unless --lang says otherwise.
ParsedCommandLine parseOptions(const QStringList &arguments, Texts::Language systemLanguage,
                               const QString &version);
