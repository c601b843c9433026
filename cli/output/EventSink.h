#pragma once

#include "checks/DeviceInfo.h"
#include "checks/Finding.h"
#include "cli/output/ExitCode.h"
#include "session/UpdateResult.h"

#include <QMap>
#include <QString>

#include <optional>

/// The progress of a stage.
struct UpdateProgress
{
    int percent = 0;
    /// Known while downloading only: flashers do not report bytes.
    std::optional<qint64> bytes;
    std::optional<qint64> total;
};

/// The end of an update, or of an attempt to begin one.
struct UpdateSummary
{
    UpdateResult result;
    ExitCode exitCode = ExitCode::Done;
    QString model;
    /// MD5 sum of the image; empty if there is none.
    QString sum;
    /// Seconds spent in each stage that was reached.
    QMap<UpdateStage, double> seconds;
};

/// Shows what happens, to another program as JSON lines or to a person as text. May be called from any
/// thread; no call blocks.
class EventSink
{
public:
    virtual ~EventSink() = default;

    virtual void device(const DeviceInfo &device) = 0;
    virtual void stage(UpdateStage stage) = 0;
    virtual void progress(const UpdateProgress &progress) = 0;
    /// One line of the update's log.
    virtual void log(const QString &line) = 0;
    virtual void result(const UpdateSummary &summary) = 0;
    /// One thing that was checked. Only the commands "check" and "manifest verify" report findings.
    virtual void finding(const Finding & /*finding*/) {}
    /// A report was written to this file.
    virtual void report(const QString & /*path*/) {}
    /// A sentence for the user. With --json it goes to standard error.
    virtual void message(const QString &sentence) = 0;
};
