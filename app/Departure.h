#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <utility>

class QMessageBox;
class QWidget;

/// Ends the program within two seconds of a request to close its window, whatever it is doing. GUI thread.
class Departure : public QObject
{
public:
    /// Returns whether a device is being written at the moment.
    using Question = std::function<bool()>;

    Departure() = default;
    ~Departure() override;

    /// Sets when requestClose() asks the user first: while `isWriting` returns true. By default it never
    /// asks.
    void askWhile(Question isWriting) { m_isWriting = std::move(isWriting); }

    /// Begins to leave the program, after asking the user if a device is being written. Returns false when
    /// the user chose to stay.
    bool requestClose(QWidget *window);

    /// Runs the event loop and returns its exit code. Returns 0 at once if the window was closed before.
    int runLoop();

    /// Ends every wait, waits for the worker and delivers the log lines that are still queued for
    /// `mainWidget`. Call after the loop. Ends the process itself if the worker cannot be stopped, because
    /// nothing that the worker uses may be destroyed then.
    void settle(QObject *mainWidget, int exitCode);

private:
    bool askToStay(QWidget *window);
    void leave();

    Question m_isWriting;
    /// Made for the first question, owned by the window and then kept. On Windows, Qt keeps a pointer to a
    /// window that is destroyed under the mouse and crashes when the next question is shown.
    QPointer<QMessageBox> m_question;
};
