#include "harness/stage/StagedProgram.h"

#include "harness/stage/StageProcesses.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>

#include <cstdio>

namespace {

QJsonArray switchedOn(const QStringList &ids)
{
    QJsonArray entries;
    for (const QString &id : ids)
        entries.append(QJsonObject{{QLatin1String("id"), id}, {QLatin1String("is_on"), true}});
    return entries;
}

/// Returns the variables that every program needs from the environment, and the options of sanitizers.
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

StagedProgram::StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName)
    : StagedProgram(std::move(system), folderName, QString())
{
}

StagedProgram::StagedProgram(const QString &executable)
    : StagedProgram(makeNativeSystem(), QString(), executable)
{
}

StagedProgram::StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName,
                             const QString &given)
    : m_system(std::move(system)),
      m_folder(QDir::tempPath() + QLatin1Char('/') +
               (folderName.isEmpty() ? QStringLiteral("quillmarsh-stage-") : folderName) +
               QStringLiteral("XXXXXX")),
      m_environment(inheritedEnvironment())
{
    const QString executable = given.isNull() ? m_system->program() : given;
    m_folder.setAutoRemove(qEnvironmentVariableIsEmpty("QUILLMARSH_KEEP_STAGE"));
    for (const char *name :
         {"app/qmake", "tmp", "work", "home/.config", "home/.cache", "home/.local/share", "run"})
        QDir(m_folder.path()).mkpath(QLatin1String(name));
    QFile::setPermissions(inStage("run"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    m_program = applicationFolder() + QLatin1Char('/') + QFileInfo(executable).fileName();
    if (!QFile::copy(executable, m_program))
        fail(QStringLiteral("cannot copy ") + executable);

    const QString problem = m_system->prepareStage(
        {applicationFolder(), temporaryFolder(), homeFolder(), runtimeFolder(), probePortFile()},
        m_environment);
    if (!problem.isEmpty())
        fail(problem);
    setLocale(QStringLiteral("en_US.UTF-8"));
    setDisplay(QString());
}

StagedProgram::~StagedProgram()
{
    const QVector<qint64> left = runningProcesses();
    for (const qint64 processId : left)
        killProcessRunningFrom(applicationFolder(), processId);
    for (const std::function<void()> &action : qAsConst(m_beforeRemoval))
        action();
    if (!m_folder.autoRemove())
        std::fprintf(stderr, "The stage is kept in %s\n", qPrintable(m_folder.path()));
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
    if (WholeFile::write(path, contents))
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
    m_system->setLocale(m_environment, locale);
}

void StagedProgram::setDisplay(const QString &display)
{
    m_system->setDisplay(m_environment, display);
}

void StagedProgram::setVariable(const QString &name, const QString &value)
{
    m_environment.insert(name, value);
}

void StagedProgram::unsetVariable(const QString &name)
{
    m_environment.remove(name);
}

void StagedProgram::shareUserOf(const StagedProgram &other)
{
    setVariable(QStringLiteral("TMPDIR"), other.temporaryFolder());
    setVariable(QStringLiteral("XDG_RUNTIME_DIR"), other.runtimeFolder());
}

Launch StagedProgram::launch(const QStringList &arguments) const
{
    QFile::remove(probePortFile());
    QStringList command = m_through + m_system->command(m_program) + arguments;
    const QString first = command.takeFirst();
    return {first, command, workingFolder(), m_environment, inStage("stdout"), inStage("stderr")};
}

QString StagedProgram::textOf(const QString &path) const
{
    return m_system->text(WholeFile::read(path));
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
