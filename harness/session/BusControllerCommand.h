#pragma once

#include <QStringList>

/// What a file tells a bus controller: the description of a bus, or a report of the program's whose bus is to
/// be shown again.
enum class BusFile { Description, Report };

/// Returns the controller's arguments for such a file.
inline QStringList busControllerArguments(const QString &file, BusFile kind)
{
    return {kind == BusFile::Report ? QStringLiteral("--report") : QStringLiteral("--description"), file};
}

/// Returns the command that starts the controller of the simulated bus on this platform.
QStringList busControllerCommand(const QString &file, BusFile kind = BusFile::Description);
