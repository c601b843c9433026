#include "simulator/standin/ByteStreams.h"
#include "simulator/standin/StandinRuns.h"
#include "simulator/standin/StandinTool.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

namespace {

/// The runs that the script has for these arguments: those beside the name of the first argument
/// where there are such, else those of the whole script.
QJsonArray scriptedRuns(const QJsonObject &script, const QString &firstArgument, bool &ownSection)
{
    ownSection = script.value(firstArgument).isObject();
    const QJsonObject section = ownSection ? script.value(firstArgument).toObject() : script;
    return section.value(QLatin1String("runs")).toArray();
}

int play(const QString &tool, const QStringList &arguments, int run)
{
    StandinTool standin(arguments);
    QFile file(tool + QStringLiteral(".script.json"));
    if (!file.exists())
        return standin.playFlasher();
    if (!file.open(QIODevice::ReadOnly))
        return 98;
    QJsonParseError error{};
    const QJsonObject script = QJsonDocument::fromJson(file.readAll(), &error).object();
    bool ownSection = false;
    const QJsonArray runs = scriptedRuns(script, arguments.value(0), ownSection);
    if (runs.isEmpty()) {
        // An unusable script must not pass for an honest flasher, but a section may be for others only.
        if (error.error == QJsonParseError::NoError && !script.contains(QLatin1String("runs")))
            return standin.playFlasher();
        fprintf(stderr, "stand-in: its script holds no runs\n");
        return 98;
    }
    int index = run;
    if (ownSection) {
        const QVector<StandinRun> before = StandinRuns::read(tool).mid(0, run);
        index = static_cast<int>(
            std::count_if(before.begin(), before.end(), [&arguments](const StandinRun &earlier) {
                return earlier.arguments.value(0) == arguments.value(0);
            }));
    }
    return standin.playSteps(runs.at(std::min(index, runs.size() - 1)).toArray());
}

} // namespace

int main(int argc, char *argv[])
{
    useByteStreams();
    const QCoreApplication application(argc, argv);
    const QString tool = QCoreApplication::applicationFilePath();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const int run = StandinRuns::appendStart(tool, arguments);
    if (run < 0) {
        fprintf(stderr, "stand-in: cannot write its record\n");
        return 97;
    }
    const int exitCode = play(tool, arguments, run);
    StandinRuns::appendEnd(tool, run, exitCode);
    return exitCode;
}
