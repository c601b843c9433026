#include "simulator/standin/StandinRuns.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>

#include <chrono>

namespace {

QString recordOf(const QString &tool)
{
    return tool + QStringLiteral(".runs.jsonl");
}

qint64 steadyMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

bool append(const QString &tool, const QJsonObject &line)
{
    QFile file(recordOf(tool));
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    return file.open(QIODevice::WriteOnly | QIODevice::Append) && file.write(text) == text.size();
}

} // namespace

QVector<StandinRun> StandinRuns::read(const QString &tool)
{
    QVector<StandinRun> runs;
    QFile file(recordOf(tool));
    if (!file.open(QIODevice::ReadOnly))
        return runs;
    while (!file.atEnd()) {
        const QJsonObject line = QJsonDocument::fromJson(file.readLine()).object();
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

int StandinRuns::appendStart(const QString &tool, const QStringList &arguments)
{
    // Two runs at one time must not take the same number.
    QLockFile lock(recordOf(tool) + QStringLiteral(".lock"));
    if (!lock.tryLock(10000))
        return -1;
    const int number = read(tool).size();
    const QJsonObject line{{QStringLiteral("event"), QStringLiteral("start")},
                           {QStringLiteral("run"), number},
                           {QStringLiteral("arguments"), QJsonArray::fromStringList(arguments)},
                           {QStringLiteral("workingDirectory"), QDir::currentPath()},
                           {QStringLiteral("startMs"), steadyMs()}};
    return append(tool, line) ? number : -1;
}

void StandinRuns::appendEnd(const QString &tool, int run, int exitCode)
{
    append(tool, {{QStringLiteral("event"), QStringLiteral("end")},
                  {QStringLiteral("run"), run},
                  {QStringLiteral("endMs"), steadyMs()},
                  {QStringLiteral("exitCode"), exitCode}});
}
