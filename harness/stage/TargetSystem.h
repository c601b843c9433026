#pragma once

#include "harness/session/BusControllerCommand.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <memory>

/// The absolute paths of a stage's folders, and of the file to which the probe writes its port.
struct StageFolders
{
    QString application;
    QString temporary;
    QString home;
    QString run;
    QString probePortFile;
};

/// The system for which the program under test was built, and how its programs are run here. An object
/// belongs to one stage, from before its first start until the last of its processes has ended.
class TargetSystem
{
public:
    virtual ~TargetSystem() = default;

    /// The program under test, and the stand-in for all tools that it starts.
    virtual QString program() const = 0;
    virtual QString standIn() const = 0;
    /// Returns the command that starts a controller whose bus is visible to programs of this system.
    virtual QStringList busController(const QString &file, BusFile kind) const = 0;

    /// Adds the files and variables that programs of this system need to the stage. Returns the error, or an
    /// empty string.
    virtual QString prepareStage(const StageFolders &folders, QProcessEnvironment &environment) = 0;
    virtual void setLocale(QProcessEnvironment &environment, const QString &locale) const = 0;
    /// Sets the X display. Without one a program draws off screen, if the system supports that.
    virtual void setDisplay(QProcessEnvironment &environment, const QString &display) const = 0;

    /// Returns the command that becomes this program; the arguments of the program are appended to it.
    virtual QStringList command(const QString &program) const = 0;
    /// Maps a path of this process to the path that programs of this system see (Z:/... under Wine).
    virtual QString toProgramPath(const QString &path) const = 0;
    /// Decodes a file that programs of this system have written; lines end with a line feed in the result.
    virtual QString text(const QByteArray &contents) const = 0;
};

/// Returns the system on which this process runs. The program under test is `program`, or the one of this
/// process's build if that is empty.
std::unique_ptr<TargetSystem> makeNativeSystem(const QString &program = QString());
