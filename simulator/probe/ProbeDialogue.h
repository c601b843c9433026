#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>

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
    QElapsedTimer m_sinceTick;
    qint64 m_largestLateness = 0;
};
