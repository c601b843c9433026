#pragma once

#include "devices/hid/HidPort.h"
#include "devices/usb/UsbBus.h"
#include "report/LastRun.h"
#include "support/lock/UpdateLock.h"
#include "update/UpdatePaths.h"

#include <QByteArray>
#include <QFutureWatcher>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <optional>

class QMenu;
class QMessageBox;
class TextWindow;

/// Adds "Save report…" to the context menu of the log window. The action asks for a file and writes a report
/// for support into it. The report is made on a thread of its own, so that the window stays responsive. GUI
/// thread.
class ReportSaver
{
public:
    struct Dependencies
    {
        UsbBus &usb;
        HidPort &hid;
        const UpdateLock &lock;
        bool usbReady = false;
        UpdatePaths paths;
        /// Returns the update that this program ran last; nothing before the first.
        std::function<std::optional<LastRun>()> lastRun;
        /// The log window: gets the menu, and owns the dialogs.
        TextWindow &window;
    };

    /// What `dependencies` refers to must outlive this object.
    explicit ReportSaver(Dependencies dependencies);
    /// Waits for a report that is being made. Making one ends early when the program shuts down.
    ~ReportSaver();
    Q_DISABLE_COPY(ReportSaver)

private:
    struct Saved
    {
        QString path;
        /// Why the report could not be written; empty if it was.
        QString problem;
        /// The program is shutting down, and no box is shown.
        bool isAbandoned = false;
    };

    void showMenu(const QPoint &place);
    void askAndSave();
    void save(const QString &path);
    void showResult(const Saved &saved);

    const Dependencies m_dependencies;
    std::unique_ptr<QMenu> m_menu;
    /// Made for the first report and then kept, for the reason given in Shutdown.
    QPointer<QMessageBox> m_box;
    QThreadPool m_pool;
    QFutureWatcher<Saved> m_watcher;
};
