#pragma once

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// What a told tool does, step by step; steps are put together with `+`.
namespace Told {

inline QByteArray step(const char *verb, const QByteArray &argument = {})
{
    return QByteArray(verb) + ' ' + argument.toPercentEncoding() + '\n';
}

inline QByteArray print(const QByteArray &bytes)
{
    return step("print", bytes);
}
inline QByteArray printError(const QByteArray &bytes)
{
    return step("error", bytes);
}
/// As many zero bytes.
inline QByteArray flood(int bytes)
{
    return step("flood", QByteArray::number(bytes));
}
inline QByteArray exitWith(int code)
{
    return step("exit", QByteArray::number(code));
}
inline QByteArray crash()
{
    return step("crash");
}
inline QByteArray sleepMs(int milliseconds)
{
    return step("sleep", QByteArray::number(milliseconds));
}
/// It does not hear of its termination, where there is such a thing; it can still be killed.
inline QByteArray deaf()
{
    return step("deaf");
}
/// Longer than any test takes.
inline QByteArray hang()
{
    return sleepMs(60000);
}
inline QByteArray awaitFile(const QString &path)
{
    return step("await", path.toUtf8());
}
/// The file is there only once the whole id is in it.
inline QByteArray noteProcessId(const QString &path)
{
    return step("pid", path.toUtf8());
}
/// From then on it cannot be started again.
inline QByteArray vanish()
{
    return step("vanish");
}
/// `then`, one step, is left out in runs whose first argument is this one.
inline QByteArray unlessAskedTo(const QByteArray &firstArgument, const QByteArray &then)
{
    return step("unless", firstArgument) + then;
}
/// `steps`, none of them under a condition, are left out in runs whose first argument is another.
inline QByteArray whenAskedTo(const QByteArray &firstArgument, const QByteArray &steps)
{
    QByteArray conditional;
    for (const QByteArray &line : steps.split('\n')) {
        if (!line.isEmpty())
            conditional += step("when", firstArgument) + line + '\n';
    }
    return conditional;
}
/// `then`, one step, is left out in the runs up to this one, counted over all tools of the folder.
inline QByteArray afterRun(int run, const QByteArray &then)
{
    return step("after", QByteArray::number(run)) + then;
}
/// `then`, one step, is left out in the runs after this one.
inline QByteArray untilRun(int run, const QByteArray &then)
{
    return step("until", QByteArray::number(run)) + then;
}

} // namespace Told

/// Programs in a folder of their own that do what they are told, the same on every platform. Each
/// notes that it was run before it does anything else.
class ToldTools
{
public:
    /// The program of that name does these steps whenever it is run.
    void write(const QString &name, const QByteArray &steps)
    {
        QFile::copy(QStringLiteral(TOLD_TOOL), program(name));
        writeSteps(program(name), steps);
    }
    /// The same for a program that is started by its name alone, from folder() as the current one.
    void writeBareName(const QString &name, const QByteArray &steps)
    {
        const QString suffix = QFileInfo(QStringLiteral(TOLD_TOOL)).suffix();
        QFile::copy(QStringLiteral(TOLD_TOOL),
                    file(suffix.isEmpty() ? name : name + QLatin1Char('.') + suffix));
        writeSteps(file(name), steps);
    }

    /// A step that waits for letGoOn(): what comes before it is read by itself.
    QByteArray pause() const { return Told::awaitFile(file(QStringLiteral("go on"))); }
    void letGoOn() const { QFile(file(QStringLiteral("go on"))).open(QIODevice::WriteOnly); }

    QString program(const QString &name) const { return file(name + QStringLiteral(".exe")); }
    QString folder() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }

    /// "name|argument|argument" of every run so far.
    QStringList runs() const
    {
        QFile runs(file(QStringLiteral("runs")));
        if (!runs.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(runs.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    static void writeSteps(const QString &startedAs, const QByteArray &steps)
    {
        QFile file(startedAs + QStringLiteral(".steps"));
        file.open(QIODevice::WriteOnly);
        file.write(steps);
    }

    QTemporaryDir m_folder;
};
