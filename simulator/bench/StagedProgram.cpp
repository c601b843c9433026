#include "simulator/bench/StagedProgram.h"

#include "simulator/bench/BenchPaths.h"
#include "simulator/bench/StageProcesses.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString textOf(const QString &path)
{
    return QString::fromUtf8(contentsOf(path));
}

QJsonArray switchedOn(const QStringList &ids)
{
    QJsonArray entries;
    for (const QString &id : ids)
        entries.append(QJsonObject{{QLatin1String("id"), id}, {QLatin1String("is_on"), true}});
    return entries;
}

/// What every program needs of the machine, and what sanitizers are told.
QProcessEnvironment inheritedEnvironment()
{
    const QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment kept;
    for (const char *name :
         {"PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
        if (all.contains(QLatin1String(name)))
            kept.insert(QLatin1String(name), all.value(QLatin1String(name)));
    }
    return kept;
}

} // namespace

StagedProgram::StagedProgram(const QString &executable) : m_environment(inheritedEnvironment())
{
    m_folder.setAutoRemove(qEnvironmentVariableIsEmpty("QUILLMARSH_BENCH_KEEP"));
    for (const char *name :
         {"app/qmake", "tmp", "work", "home/.config", "home/.cache", "home/.local/share", "run"})
        QDir(m_folder.path()).mkpath(QLatin1String(name));
    QFile::setPermissions(inStage("run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    m_program = applicationFolder() + QLatin1Char('/') + QFileInfo(executable).fileName();
    if (!QFile::copy(executable, m_program))
        fail(QStringLiteral("cannot copy ") + executable);

    setVariable(QStringLiteral("HOME"), homeFolder());
    setVariable(QStringLiteral("XDG_CONFIG_HOME"), inStage("home/.config"));
    setVariable(QStringLiteral("XDG_CACHE_HOME"), inStage("home/.cache"));
    setVariable(QStringLiteral("XDG_DATA_HOME"), inStage("home/.local/share"));
    setVariable(QStringLiteral("XDG_RUNTIME_DIR"), inStage("run"));
    setVariable(QStringLiteral("TMPDIR"), temporaryFolder());
    setVariable(QStringLiteral("QT_PLUGIN_PATH"), BenchPaths::plugins());
    setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
    setVariable(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"), probePortFile());
    // Nothing is drawn with OpenGL, and the software driver costs time and memory and leaks.
    setVariable(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("none"));
    setLocale(QStringLiteral("en_US.UTF-8"));
    setDisplay(QString());
}

StagedProgram::~StagedProgram()
{
    const QVector<qint64> left = runningProcesses();
    for (const qint64 processId : left)
        killProcessRunningFrom(applicationFolder(), processId);
}

QVector<qint64> StagedProgram::runningProcesses() const
{
    return processesRunningFrom(applicationFolder());
}

QString StagedProgram::inStage(const char *name) const
{
    return m_folder.filePath(QLatin1String(name));
}

void StagedProgram::fail(const QString &what)
{
    m_error += what + QLatin1Char('\n');
}

bool StagedProgram::write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush())
        return true;
    fail(QStringLiteral("cannot write ") + path);
    return false;
}

bool StagedProgram::addTool(const QString &name, const QString &standIn, const QJsonDocument &script)
{
    if (!QFile::copy(standIn, applicationFolder() + QLatin1Char('/') + name)) {
        fail(QStringLiteral("cannot copy %1 to %2").arg(standIn, name));
        return false;
    }
    return script.isNull() || setScript(name, script);
}

bool StagedProgram::addAllTools(const QString &standIn)
{
    return addTool(QStringLiteral("upgcmd.exe"), standIn) &&
           addTool(QStringLiteral("upgcmdHid.exe"), standIn) &&
           addTool(QStringLiteral("IAP_Programmer.exe"), standIn);
}

bool StagedProgram::setScript(const QString &name, const QJsonDocument &script)
{
    return write(applicationFolder() + QLatin1Char('/') + name + QLatin1String(".script.json"),
                 script.toJson());
}

QVector<StandinRun> StagedProgram::runs(const QString &tool) const
{
    return StandinRuns::read(applicationFolder() + QLatin1Char('/') + tool);
}

bool StagedProgram::setControlList(const QByteArray &contents)
{
    return write(applicationFolder() + QLatin1String("/qmake/ControlDevList.json"), contents);
}

bool StagedProgram::setControlList(const QStringList &models, const QStringList &writeTypes)
{
    return setControlList(QJsonDocument(QJsonObject{{QLatin1String("devices"), switchedOn(models)},
                                                    {QLatin1String("WriteType"), switchedOn(writeTypes)}})
                              .toJson());
}

void StagedProgram::setLocale(const QString &locale)
{
    setVariable(QStringLiteral("LC_ALL"), locale);
    setVariable(QStringLiteral("LANG"), locale);
}

void StagedProgram::setDisplay(const QString &display)
{
    const bool onScreen = !display.isEmpty();
    setVariable(QStringLiteral("QT_QPA_PLATFORM"),
                onScreen ? QStringLiteral("xcb") : QStringLiteral("offscreen"));
    if (onScreen)
        setVariable(QStringLiteral("DISPLAY"), display);
    else
        m_environment.remove(QStringLiteral("DISPLAY"));
}

void StagedProgram::setVariable(const QString &name, const QString &value)
{
    m_environment.insert(name, value);
}

Launch StagedProgram::launch(const QStringList &arguments) const
{
    QFile::remove(probePortFile());
    QStringList command = m_through + QStringList{m_program} + arguments;
    const QString first = command.takeFirst();
    return {first, command, workingFolder(), m_environment, inStage("stdout"), inStage("stderr")};
}

QString StagedProgram::updateLog() const
{
    return textOf(workingFolder() + QLatin1String("/UPDLog.txt"));
}

QStringList StagedProgram::updateLogLines() const
{
    static const QRegularExpression stamp(
        QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\] "));
    QStringList lines = updateLog().split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QString &line : lines)
        line.remove(stamp);
    return lines;
}

QString StagedProgram::interfaceLog() const
{
    return textOf(workingFolder() + QLatin1String("/log.txt"));
}

QString StagedProgram::standardOutput() const
{
    return textOf(inStage("stdout"));
}

QString StagedProgram::standardError() const
{
    return textOf(inStage("stderr"));
}
