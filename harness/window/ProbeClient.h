#pragma once

#include "simulator/jsonlines/JsonLineClient.h"
#include "simulator/time/RunningTime.h"

#include <QJsonArray>
#include <QString>

#include <functional>

/// Inspects and operates a running program through the probe that is loaded into it. Objects are identified
/// by their objectName, by their class name, or as "window:<title>". All calls block until the program's GUI
/// thread has answered. After a failure errorText() returns the reason.
class ProbeClient
{
public:
    /// Waits for the port file that the program writes at its start, and connects.
    bool connectThrough(const QString &portFile, int limitMs = eventLimitMs);
    bool isConnected() const { return m_client.isConnected(); }
    /// Sets how long an answer may take in running time; initially 20 s. A test that keeps the GUI thread
    /// busy needs more.
    void setAnswerLimit(int milliseconds) { m_answerLimitMs = milliseconds; }

    /// Sends a request to the probe and returns the whole answer.
    QJsonObject request(const QJsonObject &request);
    /// Returns the probe's description of an object; empty if there is no such object.
    QJsonObject read(const QString &object);
    QString text(const QString &object);
    bool isEnabled(const QString &object);
    bool isVisible(const QString &object);
    bool isChecked(const QString &object);
    /// Returns the visible top-level windows.
    QJsonArray windows();
    /// Returns the first of them whose title, class, object name or message is `name`; empty if there is
    /// none.
    QJsonObject window(const QString &name);

    /// The following functions post the events of a user action and return before the program has handled
    /// them.
    bool click(const QString &object, const QJsonObject &details = {});
    bool check(const QString &object, bool checked = true);
    bool close(const QString &object);
    /// Moves the object's window, as a window manager does.
    bool move(const QString &object, int x, int y);
    bool type(const QString &object, const QString &text, int finalKey = 0);
    bool setText(const QString &object, const QString &text);
    bool pressDialogButton(const QString &button);

    /// The following functions poll until the condition is true or `limitMs` have passed. After a failure
    /// errorText() returns the last observed state.
    bool waitForText(const QString &object, const QString &contained, int limitMs = eventLimitMs);
    bool waitForWholeText(const QString &object, const QString &text, int limitMs = eventLimitMs);
    bool waitForEnabled(const QString &object, bool enabled, int limitMs = eventLimitMs);
    bool waitForVisible(const QString &object, bool visible, int limitMs = eventLimitMs);
    bool waitForValue(const QString &object, const QString &field, const QJsonValue &value,
                      int limitMs = eventLimitMs);
    bool waitForWindow(const QString &name, int limitMs = eventLimitMs);
    bool waitForNoWindow(const QString &name, int limitMs = eventLimitMs);
    /// Waits until the program has ended, or at least closed the connection to the probe.
    bool waitForDisconnect(int limitMs = eventLimitMs) { return m_client.waitForClosed(limitMs); }

    bool grab(const QString &object, const QString &pngPath);
    bool grabScreen(const QString &pngPath);
    /// Returns the largest delay, in ms, of a 10 ms timer on the GUI thread since the last call. Time in
    /// which the whole program was stopped does not count. The first call starts the timer and returns 0.
    /// Returns -1 if there is no answer.
    int timerLate();

    QString errorText() const { return m_error; }

private:
    bool operate(const QJsonObject &request);
    bool waitForFields(const QString &object, const std::function<bool(const QJsonObject &)> &holds,
                       int limitMs);

    JsonLineClient m_client;
    int m_answerLimitMs = 20000;
    QString m_error;
};
