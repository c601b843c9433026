#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// The command, folder and environment with which the program under test is started. The paths are absolute.
struct Launch
{
    QString program;
    QStringList arguments;
    QString workingDirectory;
    /// The whole environment. Nothing is inherited; only a simulated bus adds the variables that it needs.
    QProcessEnvironment environment;
    QString stdoutFile;
    QString stderrFile;
};
