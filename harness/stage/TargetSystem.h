#pragma once

#include "harness/session/BusControllerCommand.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <memory>

/// The folders of a stage, absolute, and the file that the probe writes its port to.
struct StageFolders
{
    QString application;
    QString temporary;
    QString home;
    QString run;
    QString probePortFile;
};

/// The system that the program under test was built for, and how its programs run here. An object
/// belongs to one stage, from before its first start until the last of its processes has ended.
class TargetSystem
{
public:
    virtual ~TargetSystem() = default;

    /// The program under test, and the executable that plays every tool that it starts.
    virtual QString program() const = 0;
    virtual QString standIn() const = 0;
    /// The command that starts a controller whose bus programs of this system see.
    virtual QStringList busController(const QString &file, BusFile kind) const = 0;

    /// Gives the stage what programs of this system need, beside them and in their environment.
    /// Returns what went wrong; empty when all is well.
    virtual QString furnish(const StageFolders &folders, QProcessEnvironment &environment) = 0;
    virtual void setLocale(QProcessEnvironment &environment, const QString &locale) const = 0;
    /// Without a display a program draws off screen, where the system can.
    virtual void setDisplay(QProcessEnvironment &environment, const QString &display) const = 0;

    /// The command that becomes this program; its arguments follow.
    virtual QStringList command(const QString &program) const = 0;
    /// How programs of this system name the file.
    virtual QString nameOf(const QString &path) const = 0;
    /// The text of a file that programs of this system have written, with line feeds only.
    virtual QString text(const QByteArray &contents) const = 0;
};

/// The system that this process itself runs on, and the build that it belongs to.
std::unique_ptr<TargetSystem> makeNativeSystem();
