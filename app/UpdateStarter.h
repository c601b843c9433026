#pragma once

#include "support/LaunchOptions.h"
#include "support/Reporter.h"
#include "support/UpdateLock.h"
#include "update/ChosefirmwareWidget.h"
#include "update/LiveState.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"
#include "update/UpdateWorkflow.h"

#include <atomic>
#include <memory>

class FileDownloaderHTTP;
class ThreadFileDownloader;

/// What the start button does: checks, and then runs one workflow on the global thread pool. GUI
/// thread; what it is given must outlive the runs.
class UpdateStarter
{
public:
    struct Surroundings
    {
        Reporter &reporter;
        LiveState &state;
        UpdateHost &host;
        const UpdatePaths &paths;
        const LaunchOptions &launch;
        FileDownloaderHTTP &downloader;
        ThreadFileDownloader &segmentWorker;
        UpdateLock &lock;
    };

    explicit UpdateStarter(const Surroundings &surroundings);
    ~UpdateStarter();

    /// Starts an update, unless one is running, there is no device, or another copy of the program
    /// is updating one. Returns at once, but for the chooser's fetch of the manifest.
    void start();

    /// The running workflow leaves the rest to the IAP panel: the update goes on until takeBack().
    /// Any thread, and before the panel hears of it.
    void handOver() { m_handedOver = true; }
    /// The panel is done. Does nothing when nothing was handed over: the panel also has runs of its own.
    void takeBack();

private:
    bool mayStart();
    bool makeChooser();
    void runWorkflow();
    void declareEnded();

    Surroundings m_surroundings;
    UpdateLock::Hold m_hold;
    std::unique_ptr<ChosefirmwareWidget> m_chooser;
    /// From the press to the end of the run, also where the button is enabled in between.
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_handedOver{false};
};
