#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <utility>

class QMessageBox;
class QWidget;

/// Ends the program when its window is asked to close: within two seconds, in whatever state it is.
/// GUI thread.
class Departure : public QObject
{
public:
    /// `isWriting` tells whether a device is being written at the moment.
    using Question = std::function<bool()>;

    Departure() = default;
    ~Departure() override;

    /// Asks the user first while a device is being written. Not set, nothing is asked.
    void askWhile(Question isWriting) { m_isWriting = std::move(isWriting); }

    /// Leaves, unless the user prefers to stay; returns whether the program is leaving.
    bool closeAsked(QWidget *window);

    /// Runs the event loop, unless the window was closed before it could start, and returns its result.
    int runLoop();

    /// To be called after the loop: ends every wait, waits for the worker, and has the log lines
    /// that are still on their way to `mainWidget` delivered. Ends the process itself if the worker
    /// cannot be stopped, since nothing that it uses may be destroyed then.
    void settle(QObject *mainWidget, int exitCode);

private:
    bool userStays(QWidget *window);
    void leave();

    Question m_isWriting;
    /// Made with the first question, owned by the window, and kept: on Windows the toolkit keeps a pointer
    /// to a window that goes while the mouse is on it, and crashes when the next question is shown.
    QPointer<QMessageBox> m_question;
};
