#pragma once

#include "session/UpdateResult.h"

#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

class UpdateSession;

/// How the last update ended, and how long its stages took.
struct LastRun
{
    /// Whether the running program did this update. Otherwise only the log of an earlier run shows it.
    bool isKnown = false;
    /// Nothing if it is not known, such as for an update that has not ended.
    std::optional<UpdateResult::Outcome> outcome;
    UpdateStage stage = UpdateStage::Idle;
    /// Nothing if only a log shows the update.
    std::optional<UpdateReason> reason;
    QMap<UpdateStage, double> seconds;

    /// Returns the update that ended last in this program; nothing before the first.
    static std::optional<LastRun> of(const UpdateSession &session);
    /// Finds the last update in the lines of UPDLog.txt, whose times are whole seconds. Returns nothing if
    /// there is none.
    static std::optional<LastRun> fromLog(const QStringList &lines);

    /// Returns the JSON object for a report.
    QJsonValue toJson() const;
};
