#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <utility>

class QMessageBox;
class QWidget;

/// Ends the program within two seconds of a request to close its window, whatever it is doing. GUI thread.
class Shutdown : public QObject
{
public:
    /// Returns whether a device is being written at the moment.
    using Question = std::function<bool()>;

    Shutdown() = default;
    ~Shutdown() override;

    /// Makes requestClose() ask the user first while `isWriting` returns true. By default it never asks.
    void askFirstWhile(Question isWriting) { m_isWriting = std::move(isWriting); }

    /// Begins to end the program, after asking the user if a device is being written. Returns false if the
    /// user chose to keep it running.
    bool requestClose(QWidget *window);

    /// Runs the event loop and returns its exit code. Returns 0 at once if the window was closed before.
    int runLoop();

    /// Ends every wait, waits for the update thread and delivers the log lines that are still queued for
    /// `mainWidget`. Call it after runLoop(). Ends the process if the update thread does not stop in time,
    /// because nothing that this thread uses may be destroyed then.
    void finish(QObject *mainWidget, int exitCode);

private:
    bool userKeepsRunning(QWidget *window);
    void begin();

    Question m_isWriting;
    /// Made for the first question, owned by the window and then kept. On Windows, Qt keeps a pointer to a
    /// window that is destroyed under the mouse and crashes when the next question is shown.
    QPointer<QMessageBox> m_question;
};
