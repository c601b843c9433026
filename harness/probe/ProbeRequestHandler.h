#pragma once

#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QTimer>

#include <memory>
#include <optional>

/// Handles the probe's requests. Lives on the GUI thread; all requests are answered at once.
class ProbeRequestHandler
{
public:
    ProbeRequestHandler();

    /// Returns the answer to a request. It is {"ok":false,"error":..} for an unknown operation or object.
    QJsonObject answer(const QJsonObject &request);

private:
    QJsonObject answerFor(QWidget &widget, const QString &operation, const QJsonObject &request);
    QJsonObject timerLate();
    qint64 lateness() const;

    QTimer m_timer;
    /// Created with the first request, so that runs that do not use it do not have its thread.
    std::unique_ptr<RunningClock> m_clock;
    std::optional<RunningTimer> m_sinceTick;
    qint64 m_largestLateness = 0;
};
