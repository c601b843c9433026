#pragma once

#include "simulator/time/RunningTime.h"

#include <QJsonObject>
#include <QTimer>

#include <memory>
#include <optional>

/// Answers the probe's requests. Lives on the GUI thread; every answer is given at once.
class ProbeDialogue
{
public:
    ProbeDialogue();

    /// The answer to one request; an unknown operation or object is {"ok":false,"error":..}.
    QJsonObject answer(const QJsonObject &request);

private:
    QJsonObject answerFor(QWidget &widget, const QString &operation, const QJsonObject &request);
    QJsonObject timerLate();
    qint64 lateness() const;

    QTimer m_timer;
    /// Made with the first question, so that no other run has its thread.
    std::unique_ptr<RunningClock> m_clock;
    std::optional<RunningTimer> m_sinceTick;
    qint64 m_largestLateness = 0;
};
