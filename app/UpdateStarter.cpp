#include "app/UpdateStarter.h"

#include "support/Clock.h"
#include "support/LanguageUtilities.h"
#include "support/process/ToolRun.h"
#include "update/FirmwareFetch.h"
#include "update/UpdateTitles.h"

#include <QDebug>
#include <QtConcurrent>

namespace {

QString reasonToStayAwake()
{
    return LanguageUtilities::instance().language() == QLatin1String("zh_CN")
               ? QStringLiteral("正在向设备写入固件。")
               : QStringLiteral("Firmware is being written to a device.");
}

} // namespace

UpdateStarter::UpdateStarter(const Dependencies &dependencies)
    : m_dependencies(dependencies),
      m_awake(reasonToStayAwake(), dependencies.window,
              [this](const QString &line) { m_dependencies.reporter.log(line); })
{
    m_dependencies.session.watchStages([this](UpdateStage stage) { m_awake.onStageChanged(stage); });
}

UpdateStarter::~UpdateStarter()
{
    m_dependencies.session.watchStages({});
}

void UpdateStarter::start()
{
    UpdateSession &session = m_dependencies.session;
    if (!session.isStartAllowed() || isWaitingForTool())
        return;
    if (!hasDevice()) {
        reportMissingDevice();
        return;
    }
    Reporter &reporter = m_dependencies.reporter;
    if (!session.begin(UpdateStage::Fetching, reporter))
        return;
    const UpdateRequest request = m_dependencies.choices.request();
    reporter.setProgress(0);
    reporter.runDeviceCheck(false);
    reporter.enableStartButton(false);
    qDebug() << "Start Update button was pressed!";
    if (makeChooser())
        QtConcurrent::run([this, request] { runWorkflow(request); });
    else
        session.end(UpdateReason::ProgramClosed, UpdateSession::Afterwards::ProgramClosed, {});
}

bool UpdateStarter::hasDevice() const
{
    return !m_dependencies.choices.device().name.isEmpty() || m_dependencies.choices.bootloaderPresent();
}

void UpdateStarter::reportMissingDevice()
{
    m_dependencies.reporter.setStateTitle(UpdateTitles::startWithoutDevice);
    m_dependencies.reporter.log(QStringLiteral("click UpdateBtn ERROR - Not Check Dev!"));
}

/// Makes the chooser for this run. Returns false if the program began to shut down meanwhile.
bool UpdateStarter::makeChooser()
{
    m_chooser = std::make_unique<ChosefirmwareWidget>(m_dependencies.paths.manifestUrl, nullptr,
                                                      &m_dependencies.reporter);
    m_chooser->hide();
    return !Clock::real().isShuttingDown();
}

void UpdateStarter::runWorkflow(const UpdateRequest &request)
{
    const Dependencies &d = m_dependencies;
    FirmwareFetch fetch(d.reporter, d.session, d.choices, Clock::real(), d.paths, d.downloader,
                        d.segmentWorker, m_chooser.get());
    const UpdateWorkflow::Dependencies workflow{d.reporter,    d.session, d.choices, d.host,
                                                Clock::real(), d.paths,   d.launch,  fetch};
    UpdateWorkflow(workflow, request).run();
}
