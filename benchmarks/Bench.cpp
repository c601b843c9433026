#include "benchmarks/Subjects.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>

namespace {

struct Subject
{
    const char *name;
    std::function<QString(BenchContext &)> measure;
};

const QVector<Subject> &subjects()
{
    static const QVector<Subject> all{
        {"md5", Subjects::md5},
        {"signature", Subjects::signature},
        {"download", Subjects::loopbackDownload},
        {"link", Subjects::lossyDownload},
        {"clean-link", Subjects::cleanDownload},
        {"click", Subjects::clickToSuccess},
        {"monitor", Subjects::monitorTick},
        {"start", Subjects::startAndMemory},
        {"memory", Subjects::downloadMemory},
        {"log", Subjects::logFlood},
        {"idle", Subjects::idle},
        {"cli-start", Subjects::cliStart},
        {"cli-update", Subjects::cliUpdate},
        {"serve", Subjects::serve},
    };
    return all;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    QStringList names;
    for (const Subject &subject : subjects())
        names.append(QLatin1String(subject.name));
    parser.addPositionalArgument(QStringLiteral("subjects"), names.join(QLatin1Char(' ')));
    const QCommandLineOption output(QStringLiteral("output"), QStringLiteral("The folder for the table."),
                                    QStringLiteral("folder"), QStringLiteral("."));
    const QCommandLineOption rounds(QStringLiteral("rounds"),
                                    QStringLiteral("The number of alternating rounds."), QStringLiteral("n"),
                                    QStringLiteral("5"));
    parser.addOptions({output, rounds});
    parser.process(application);

    const QString folder = QDir(parser.value(output)).absolutePath();
    QDir().mkpath(folder);
    Results results(folder);
    for (const Subject &subject : subjects()) {
        const QString name = QLatin1String(subject.name);
        if (!parser.positionalArguments().isEmpty() && !parser.positionalArguments().contains(name))
            continue;
        const QTemporaryDir work(folder + QLatin1String("/work-XXXXXX"));
        BenchContext context{results, work.path(), parser.value(rounds).toInt()};
        const QString problem = subject.measure(context);
        if (!problem.isEmpty())
            results.fail(name, problem);
    }
    QTextStream(stdout) << '\n' << results.table();
    return results.hasFailures() ? 1 : 0;
}
