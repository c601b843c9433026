#pragma once

#include "harness/process/Launch.h"
#include "harness/stage/TargetSystem.h"
#include "simulator/standin/StandinRuns.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <functional>

/// A copy of the program in a stage: a folder with a separate temporary, working and home folder, so that
/// tests use neither each other's nor the user's files. The destructor kills all processes that still run
/// from the stage and removes it. If the environment variable QUILLMARSH_KEEP_STAGE is set, it keeps the
/// stage and prints where it is.
class StagedProgram
{
public:
    /// Copies the program under test of `system`; isValid() returns whether that succeeded. The name of the
    /// stage's folder begins with `folderName`.
    explicit StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName = QString());
    /// Copies `executable`, a program for the system of this process.
    explicit StagedProgram(const QString &executable);
    /// Copies `executable`, a program of `system`.
    StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName, const QString &executable);
    ~StagedProgram();
    StagedProgram(const StagedProgram &) = delete;
    StagedProgram &operator=(const StagedProgram &) = delete;

    bool isValid() const { return m_error.isEmpty(); }
    QString errorText() const { return m_error; }

    const TargetSystem &system() const { return *m_system; }
    /// Maps a path of this process to the path that the program sees (Z:/... under Wine).
    QString toProgramPath(const QString &path) const { return m_system->toProgramPath(path); }

    QString applicationFolder() const { return inStage("app"); }
    QString temporaryFolder() const { return inStage("tmp"); }
    QString workingFolder() const { return inStage("work"); }
    QString homeFolder() const { return inStage("home"); }
    /// The runtime folder of the user's session, which contains the program's lock file.
    QString runtimeFolder() const { return inStage("run"); }
    /// Makes the program run for the same user as `other`.
    void shareUserOf(const StagedProgram &other);

    /// Copies the stand-in beside the program as `name`. It plays `script`, if there is one.
    bool addTool(const QString &name, const QString &standIn, const QJsonDocument &script = {});
    /// Adds the two flashers and the IAP programmer, without scripts.
    bool addAllTools(const QString &standIn);
    /// Sets or replaces the script of a tool that was added.
    bool setScript(const QString &name, const QJsonDocument &script);
    /// Returns the records of a tool's runs so far.
    QVector<StandinRun> runs(const QString &tool) const;

    /// Returns the ids of the processes that run from this stage: the program and the tools that it has
    /// started.
    QVector<qint64> runningProcesses() const;

    /// Writes the control list, with the models that the program detects and the write types that it offers.
    bool setControlList(const QByteArray &contents);
    bool setControlList(const QStringList &models, const QStringList &writeTypes);

    /// Sets the system locale that the program sees; initially "en_US.UTF-8". It need not be installed.
    void setLocale(const QString &locale);
    /// Sets the X display to use; without one the program draws off screen.
    void setDisplay(const QString &display);
    void setVariable(const QString &name, const QString &value);
    void unsetVariable(const QString &name);
    /// Starts the program through `command`, for example one that drops privileges. The program's command
    /// line is appended to it. The command must replace itself with the program, not become its parent.
    void startThrough(const QStringList &command) { m_through = command; }
    /// Returns how to start the program with the probe loaded. Removes the port file of an earlier start.
    Launch launch(const QStringList &arguments = {}) const;
    /// Returns the file to which the probe writes its port.
    QString probePortFile() const { return inStage("probe-port"); }

    /// Makes the destructor call `action` once no program runs any more and before it removes the stage, for
    /// example to unmount what a test has mounted there.
    void beforeRemoval(const std::function<void()> &action) { m_beforeRemoval.append(action); }

    /// Return UPDLog.txt as it is, and its lines without time stamps. A message with line feeds has several
    /// lines.
    QString updateLog() const;
    QStringList updateLogLines() const;
    /// Returns log.txt.
    QString interfaceLog() const;
    QString standardOutput() const;
    QString standardError() const;

private:
    QString inStage(const char *name) const;
    QString textOf(const QString &path) const;
    void fail(const QString &what);
    bool write(const QString &path, const QByteArray &contents);

    std::unique_ptr<TargetSystem> m_system;
    QTemporaryDir m_folder;
    QString m_program;
    QProcessEnvironment m_environment;
    QStringList m_through;
    QVector<std::function<void()>> m_beforeRemoval;
    QString m_error;
};
