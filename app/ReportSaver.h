#pragma once

#include "devices/HidPort.h"
#include "devices/UsbBus.h"
#include "report/LastRun.h"
#include "support/UpdateLock.h"
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

/// "Save report…" in the context menu of the log window: asks for a file and writes a report for support into
/// it. The report is made on a thread of its own, and the window stays alive. GUI thread.
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
        /// The log window, whose menu and boxes they are.
        TextWindow &window;
    };

    /// What `dependencies` refers to must outlive this object.
    explicit ReportSaver(Dependencies dependencies);
    /// Waits for a report that is being made; it ends early when the program leaves.
    ~ReportSaver();
    Q_DISABLE_COPY(ReportSaver)

private:
    struct Saved
    {
        QString path;
        /// Empty if it was written.
        QString problem;
        /// The program leaves, and nobody is told.
        bool isCutShort = false;
    };

    void showMenu(const QPoint &place);
    void askAndSave();
    void save(const QString &path);
    void tell(const Saved &saved);

    const Dependencies m_dependencies;
    std::unique_ptr<QMenu> m_menu;
    /// Kept, like the question of Departure.
    QPointer<QMessageBox> m_box;
    QThreadPool m_pool;
    QFutureWatcher<Saved> m_watcher;
};
