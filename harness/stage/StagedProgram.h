#pragma once

#include "harness/process/Launch.h"
#include "harness/stage/TargetSystem.h"
#include "simulator/standin/StandinRuns.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

/// A copy of the program in a folder of its own, with a temporary, a working and a home folder of
/// its own, so that tests neither see each other nor the user's files. The folders go with the
/// object, unless the environment variable QUILLMARSH_KEEP_STAGE is set, and so does whatever still
/// runs from them.
class StagedProgram
{
public:
    /// Copies the system's program under test; isValid() tells whether that went well.
    /// The name of the stage's folder begins with `folderName`.
    explicit StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName = QString());
    /// Copies `executable`, a program of the system that this process runs on.
    explicit StagedProgram(const QString &executable);
    /// Copies `executable`, a program of `system`.
    StagedProgram(std::unique_ptr<TargetSystem> system, const QString &folderName, const QString &executable);
    ~StagedProgram();
    StagedProgram(const StagedProgram &) = delete;
    StagedProgram &operator=(const StagedProgram &) = delete;

    bool isValid() const { return m_error.isEmpty(); }
    QString errorText() const { return m_error; }

    const TargetSystem &system() const { return *m_system; }
    /// How the program names a file.
    QString nameOf(const QString &path) const { return m_system->nameOf(path); }

    QString applicationFolder() const { return inStage("app"); }
    QString temporaryFolder() const { return inStage("tmp"); }
    QString workingFolder() const { return inStage("work"); }
    QString homeFolder() const { return inStage("home"); }
    /// The folder of the user's session, in which the program keeps its lock.
    QString runtimeFolder() const { return inStage("run"); }
    /// Has the program run as another copy for the same user as `other`.
    void shareUserOf(const StagedProgram &other);

    /// Copies the stand-in beside the program as `name`; it plays `script` when there is one.
    bool addTool(const QString &name, const QString &standIn, const QJsonDocument &script = {});
    /// The two flashers and the IAP programmer, without scripts.
    bool addAllTools(const QString &standIn);
    /// Gives a tool that was added its script, in place of an earlier one.
    bool setScript(const QString &name, const QJsonDocument &script);
    /// What a tool recorded of its runs so far.
    QVector<StandinRun> runs(const QString &tool) const;

    /// The ids of the processes that run from this stage: the program, and the tools that it started
    /// and that have not ended.
    QVector<qint64> runningProcesses() const;

    /// Writes the list of models that the program detects and of the ways of writing it offers.
    bool setControlList(const QByteArray &contents);
    bool setControlList(const QStringList &models, const QStringList &writeTypes);

    /// The system locale that the program sees; "en_US.UTF-8" at first. Need not be installed.
    void setLocale(const QString &locale);
    /// The X display to use; without one the program draws off screen.
    void setDisplay(const QString &display);
    void setVariable(const QString &name, const QString &value);
    void unsetVariable(const QString &name);
    /// Starts the program through another one, such as one that drops privileges first: its name and
    /// arguments, after which the program's own follow. It must become the program, not its parent.
    void startThrough(const QStringList &command) { m_through = command; }
    /// How to start it, with the probe loaded. An earlier start's port file is removed.
    Launch launch(const QStringList &arguments = {}) const;
    /// Where that start's probe writes its port.
    QString probePortFile() const { return inStage("probe-port"); }

    /// UPDLog.txt as it is, and its messages without the time stamps; a message that has line feeds
    /// is several lines.
    QString updateLog() const;
    QStringList updateLogLines() const;
    /// log.txt.
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
    QString m_error;
};
