#pragma once

#include "simulator/bus/BusDescription.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What a report for support tells, as far as it can be shown again: the devices that stood on the user's
/// buses, and what decides about them beside the program.
struct ReportedBus
{
    BusDescription bus;
    /// The contents of the control list; nothing if it could not be read.
    std::optional<QByteArray> controlList;
    /// Whether the program spoke Chinese.
    bool isChinese = false;
    /// The model that the program detected, or that the first known device has; empty if there is none.
    QString model;

    /// Larger reports are refused; the program makes none of a third of this size.
    static constexpr qint64 maximumBytes = qint64{32} * 1024 * 1024;

    /// Reads a report. Nothing that it says is believed before it has been checked: nothing is returned, and
    /// `error` (may be null) tells why, for one that is cut, not of the known format or senseless.
    static std::optional<ReportedBus> parse(const QByteArray &json, QString *error);
    /// Reads the file of a report. What is no plain file or too large is refused unread.
    static std::optional<ReportedBus> read(const QString &path, QString *error);
};
