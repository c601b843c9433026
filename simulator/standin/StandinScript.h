#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>

/// Creates scripts for stand-in tools. The steps are described in the simulator's README.md.
namespace StandinScript {

/// Returns a step of a run.
inline QJsonObject step(const char *name, const QJsonValue &value = true)
{
    return {{QLatin1String(name), value}};
}

/// Returns a section of a script: the steps of the first run, the second run and so on. The last run is
/// repeated.
inline QJsonObject runs(const QList<QJsonArray> &all)
{
    QJsonArray list;
    for (const QJsonArray &run : all)
        list.append(run);
    return {{QStringLiteral("runs"), list}};
}

/// Returns a script whose runs do not depend on the arguments.
inline QJsonDocument script(const QList<QJsonArray> &all)
{
    return QJsonDocument(runs(all));
}

/// Returns a script for runs with this first argument. With other arguments the tool works normally.
inline QJsonDocument scriptFor(const QString &firstArgument, const QList<QJsonArray> &all)
{
    return QJsonDocument(QJsonObject{{firstArgument, runs(all)}});
}

} // namespace StandinScript
