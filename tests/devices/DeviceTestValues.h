#pragma once

#include "devices/models/ModelTable.h"
#include "support/process/LaunchOptions.h"

#include <QString>

/// Returns a row of the table by its number, counted from 1 as in ModelIds.inc.
inline const ModelRow &modelRow(int row)
{
    static const ModelTable table;
    return table.rows().at(row - 1);
}

/// Returns the first row with this name.
inline const ModelRow &model(const char *name)
{
    static const ModelTable table;
    for (const ModelRow &row : table.rows()) {
        if (row.name == QLatin1String(name))
            return row;
    }
    qFatal("no model %s", name);
}

inline LaunchOptions zn58Mode()
{
    LaunchOptions options;
    options.isZN58Mode = true;
    return options;
}

inline LaunchOptions tessilonixMode(const char *wanted)
{
    LaunchOptions options;
    options.isTessilonixMode = true;
    options.wantedModelName = QString::fromUtf8(wanted);
    return options;
}
