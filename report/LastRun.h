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
    /// Whether the program that makes the report ran it, and not an earlier one that left a log.
    bool isKnown = false;
    /// Empty while it cannot be told, as of an update that has not ended.
    std::optional<UpdateResult::Outcome> outcome;
    UpdateStage stage = UpdateStage::Idle;
    /// Nothing where only the log tells.
    std::optional<UpdateReason> reason;
    QMap<UpdateStage, double> seconds;

    /// Returns the update that ended last in this program; nothing before the first.
    static std::optional<LastRun> of(const UpdateSession &session);
    /// Finds the last update in the lines of UPDLog.txt, whose times are whole seconds. Nothing if there is
    /// none.
    static std::optional<LastRun> fromLog(const QStringList &lines);

    /// Returns the object of a report.
    QJsonValue toJson() const;
};
