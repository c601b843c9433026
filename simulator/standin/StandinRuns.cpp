#include "simulator/standin/StandinRuns.h"

#include "simulator/jsonlines/JsonLine.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

QString StandinRuns::recordOf(const QString &tool)
{
    return tool + QStringLiteral(".runs.jsonl");
}

QVector<StandinRun> StandinRuns::read(const QString &tool)
{
    QVector<StandinRun> runs;
    QFile file(recordOf(tool));
    if (!file.open(QIODevice::ReadOnly))
        return runs;
    while (!file.atEnd()) {
        const QJsonObject line = JsonLine::read(file.readLine()).object();
        const int number = line.value(QLatin1String("run")).toInt(-1);
        if (line.value(QLatin1String("event")).toString() == QLatin1String("start")) {
            StandinRun run;
            const QJsonArray arguments = line.value(QLatin1String("arguments")).toArray();
            for (const QJsonValue &argument : arguments)
                run.arguments.append(argument.toString());
            run.workingDirectory = line.value(QLatin1String("workingDirectory")).toString();
            run.startMs = static_cast<qint64>(line.value(QLatin1String("startMs")).toDouble());
            runs.append(run);
        } else if (number >= 0 && number < runs.size()) {
            runs[number].endMs = static_cast<qint64>(line.value(QLatin1String("endMs")).toDouble());
            runs[number].exitCode = line.value(QLatin1String("exitCode")).toInt();
        }
    }
    return runs;
}
