#pragma once

#include "session/AwakeWhileWriting.h"
#include "session/UpdateSession.h"
#include "support/log/Reporter.h"
#include "support/process/LaunchOptions.h"
#include "update/ChosefirmwareWidget.h"
#include "update/UpdateChoices.h"
#include "update/UpdateHost.h"
#include "update/UpdatePaths.h"
#include "update/UpdateWorkflow.h"

#include <memory>

class FileDownloaderHTTP;
class ThreadFileDownloader;

/// Starts updates when the start button is pressed: checks the conditions, then runs one workflow on the
/// global thread pool. Keeps the system awake while a device is written. GUI thread. The dependencies must
/// outlive every run.
class UpdateStarter
{
public:
    struct Dependencies
    {
        Reporter &reporter;
        UpdateSession &session;
        UpdateChoices &choices;
        UpdateHost &host;
        const UpdatePaths &paths;
        const LaunchOptions &launch;
        FileDownloaderHTTP &downloader;
        ThreadFileDownloader &segmentWorker;
        /// Native id of the main window; 0 if there is none.
        quintptr window;
    };

    explicit UpdateStarter(const Dependencies &dependencies);
    ~UpdateStarter();

    /// Starts an update. Does nothing while the session allows none or a tool is being waited for; reports to
    /// the user when there is no device or another copy of the program is updating one. Fetches the chooser's
    /// manifest in a local event loop, then returns without waiting for the update.
    void start();

private:
    bool hasDevice() const;
    void reportMissingDevice();
    bool makeChooser();
    void runWorkflow(const UpdateRequest &request);

    Dependencies m_dependencies;
    AwakeWhileWriting m_awake;
    std::unique_ptr<ChosefirmwareWidget> m_chooser;
};
