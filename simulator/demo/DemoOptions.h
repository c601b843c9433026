#pragma once

#include <QString>
#include <QStringList>

/// What the demo was asked to show.
struct DemoOptions
{
    /// Press Start and end by itself, on a display of its own.
    bool automatic = false;
    /// The system locale that the program sees.
    QString locale = QStringLiteral("en_US.UTF-8");
    /// Where the pictures go.
    QString pictures = QStringLiteral(".");

    /// Reads the arguments; ends the process with a message when it cannot.
    static DemoOptions read(const QStringList &arguments);
};
