#pragma once

#include "simulator/jsonlines/JsonLineClient.h"
#include "simulator/time/RunningTime.h"

#include <QJsonArray>
#include <QString>

#include <functional>

/// Looks at and operates a running program through the probe that was loaded into it. Objects are
/// named by their objectName, by their class name, or as "window:<title>". Every call blocks until
/// the program's GUI thread has answered; what fails tells why in errorText().
class ProbeClient
{
public:
    /// Waits for the port file that the program writes at its start, and connects.
    bool connectThrough(const QString &portFile, int limitMs = eventLimitMs);
    bool isConnected() const { return m_client.isConnected(); }
    /// How long an answer may take in running time, 20 s at first. A test that keeps the GUI thread busy on
    /// purpose sets more.
    void setAnswerLimit(int milliseconds) { m_answerLimitMs = milliseconds; }

    /// Any request of the probe's; the whole answer.
    QJsonObject request(const QJsonObject &request);
    /// Everything that the probe tells of one object; empty when there is no such object.
    QJsonObject read(const QString &object);
    QString text(const QString &object);
    bool isEnabled(const QString &object);
    bool isVisible(const QString &object);
    bool isChecked(const QString &object);
    /// The visible top-level windows.
    QJsonArray windows();
    /// The first of them whose title, class, object name or message is `name`; empty for none.
    QJsonObject window(const QString &name);

    /// These post what a user does, and return before the program has acted on it.
    bool click(const QString &object, const QJsonObject &details = {});
    bool check(const QString &object, bool checked = true);
    bool close(const QString &object);
    /// Moves the object's window, as a window manager does.
    bool move(const QString &object, int x, int y);
    bool type(const QString &object, const QString &text, int finalKey = 0);
    bool setText(const QString &object, const QString &text);
    bool pressDialogButton(const QString &button);

    /// Each polls until it holds or `limitMs` have passed, and then tells in errorText() what was
    /// seen last.
    bool waitForText(const QString &object, const QString &contained, int limitMs = eventLimitMs);
    bool waitForWholeText(const QString &object, const QString &text, int limitMs = eventLimitMs);
    bool waitForEnabled(const QString &object, bool enabled, int limitMs = eventLimitMs);
    bool waitForVisible(const QString &object, bool visible, int limitMs = eventLimitMs);
    bool waitForValue(const QString &object, const QString &field, const QJsonValue &value,
                      int limitMs = eventLimitMs);
    bool waitForWindow(const QString &name, int limitMs = eventLimitMs);
    bool waitForNoWindow(const QString &name, int limitMs = eventLimitMs);
    /// Whether the program has gone, or at least closed the probe.
    bool waitForGone(int limitMs = eventLimitMs) { return m_client.waitForClosed(limitMs); }

    bool grab(const QString &object, const QString &pngPath);
    bool grabScreen(const QString &pngPath);
    /// How late, in ms, a 10 ms timer of the GUI thread came at most since this was last asked, without
    /// the time in which the whole program stood still. The first call starts the timer and returns 0; -1
    /// without an answer.
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
