#pragma once

#include "simulator/files/WholeFile.h"
#include "simulator/standin/StandinRuns.h"
#include "simulator/standin/StandinScript.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

/// The steps of a run of a scripted tool; they are concatenated with `+`.
class ToolSteps
{
public:
    ToolSteps() = default;
    explicit ToolSteps(const QJsonObject &step) : m_json{step} {}

    const QJsonArray &toJson() const { return m_json; }

    friend ToolSteps operator+(ToolSteps first, const ToolSteps &second)
    {
        for (const QJsonValue &step : second.m_json)
            first.m_json.append(step);
        return first;
    }

private:
    QJsonArray m_json;
};

namespace ToolStep {

inline ToolSteps step(const char *name, const QJsonValue &value = true)
{
    return ToolSteps(StandinScript::step(name, value));
}

/// Prints the bytes, which need not be UTF-8.
inline ToolSteps print(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.toUtf8() == bytes ? step("print", text)
                                  : step("printHex", QString::fromLatin1(bytes.toHex()));
}
inline ToolSteps printError(const QByteArray &utf8)
{
    return step("stderr", QString::fromUtf8(utf8));
}
/// Prints this number of bytes.
inline ToolSteps flood(int bytes)
{
    return step("flood", bytes);
}
inline ToolSteps exitWith(int code)
{
    return step("exit", code);
}
inline ToolSteps crash()
{
    return step("crash");
}
inline ToolSteps sleepMs(int milliseconds)
{
    return step("sleepMs", milliseconds);
}
/// Makes the tool ignore its termination, on systems that have one; it can still be killed.
inline ToolSteps ignoreTermination()
{
    return step("deaf");
}
/// Waits for longer than any test takes.
inline ToolSteps hang()
{
    return sleepMs(60000);
}
inline ToolSteps awaitFile(const QString &path)
{
    return step("awaitFile", path);
}
/// Writes the process id to a file, which appears only once it is complete.
inline ToolSteps noteProcessId(const QString &path)
{
    return step("processId", path);
}
/// Removes the tool, so that it cannot be started again.
inline ToolSteps vanish()
{
    return step("vanish");
}

} // namespace ToolStep

/// Stand-in tools in a separate folder that play scripts. They are the same on all platforms.
class ScriptedTools
{
public:
    /// Creates a program with this name that performs these steps whenever it is run.
    void write(const QString &name, const ToolSteps &steps) { writeScript(name, scriptOf(steps)); }
    void writeScript(const QString &name, const QJsonDocument &script) { place(program(name), script); }
    /// Like write(), for a program that is started by its name alone, with folder() as the working folder.
    void writeBareName(const QString &name, const ToolSteps &steps)
    {
        const QString suffix = QFileInfo(QStringLiteral(STANDIN)).suffix();
        place(file(suffix.isEmpty() ? name : name + QLatin1Char('.') + suffix), scriptOf(steps));
    }
    /// Creates a stand-in at `path` that plays `script`, and replaces an earlier script.
    static void place(const QString &path, const QJsonDocument &script)
    {
        QFile::copy(QStringLiteral(STANDIN), path);
        WholeFile::write(path + QStringLiteral(".script.json"), script.toJson());
    }
    static QJsonDocument scriptOf(const ToolSteps &steps) { return StandinScript::script({steps.toJson()}); }

    /// Returns a step that waits for letGoOn(), so that the output before it is read separately.
    ToolSteps pause() const { return ToolStep::awaitFile(file(QStringLiteral("go on"))); }
    void letGoOn() const { WholeFile::write(file(QStringLiteral("go on"))); }
    /// Makes pause() wait again.
    void holdBack() const { QFile::remove(file(QStringLiteral("go on"))); }

    QString program(const QString &name) const { return file(name + QStringLiteral(".exe")); }
    QString folder() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }

    /// Returns "name|argument|argument" of all runs so far, in the order of their starts.
    QStringList runs() const
    {
        QVector<StandinRun> all;
        for (const QString &record : records()) {
            const QString tool = record.left(record.size() - StandinRuns::recordOf({}).size());
            for (StandinRun run : StandinRuns::read(file(tool))) {
                run.arguments.prepend(tool.endsWith(QLatin1String(".exe")) ? tool.chopped(4) : tool);
                all.append(run);
            }
        }
        std::stable_sort(all.begin(), all.end(), [](const StandinRun &left, const StandinRun &right) {
            return left.startMs < right.startMs;
        });
        QStringList lines;
        for (const StandinRun &run : all)
            lines.append(run.arguments.join(QLatin1Char('|')));
        return lines;
    }
    void forgetRuns() const
    {
        for (const QString &record : records())
            QFile::remove(file(record));
    }

private:
    QStringList records() const
    {
        return QDir(folder()).entryList({QLatin1Char('*') + StandinRuns::recordOf({})}, QDir::Files);
    }

    QTemporaryDir m_folder;
};
