#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>

/// Scripts for stand-in tools; README.md of the simulator describes the steps.
namespace StandinScript {

/// One step of a run.
inline QJsonObject step(const char *name, const QJsonValue &value = true)
{
    return {{QLatin1String(name), value}};
}

/// A section of a script: the first run, the second one and so on, of which the last is repeated.
inline QJsonObject runs(const QList<QJsonArray> &all)
{
    QJsonArray list;
    for (const QJsonArray &run : all)
        list.append(run);
    return {{QStringLiteral("runs"), list}};
}

/// A script with the same runs whatever the arguments are.
inline QJsonDocument script(const QList<QJsonArray> &all)
{
    return QJsonDocument(runs(all));
}

/// A script for the runs with this first argument; with others the tool stays honest.
inline QJsonDocument scriptFor(const QString &firstArgument, const QList<QJsonArray> &all)
{
    return QJsonDocument(QJsonObject{{firstArgument, runs(all)}});
}

} // namespace StandinScript
