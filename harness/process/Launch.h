#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// How the program under test is to be started. The paths are absolute.
struct Launch
{
    QString program;
    QStringList arguments;
    QString workingDirectory;
    /// All of it; nothing is inherited but what a simulated bus needs to be seen.
    QProcessEnvironment environment;
    QString stdoutFile;
    QString stderrFile;
};
