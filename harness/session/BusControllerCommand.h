#pragma once

#include <QStringList>

/// Returns the command that starts the controller of the simulated bus on this platform.
QStringList busControllerCommand(const QString &descriptionFile);
