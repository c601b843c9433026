#include "app/UpdateStarter.h"

#include "support/Clock.h"
#include "support/ToolRun.h"
#include "update/FirmwareFetch.h"
#include "update/UpdateTitles.h"

#include <QDebug>
#include <QtConcurrent>

UpdateStarter::UpdateStarter(const Surroundings &surroundings) : m_surroundings(surroundings) {}

UpdateStarter::~UpdateStarter() = default;

void UpdateStarter::start()
{
    if (m_running || isWaitingForTool() || !mayStart())
        return;
    m_running = true;
    Reporter &reporter = m_surroundings.reporter;
    reporter.setProgress(0);
    reporter.runDeviceCheck(false);
    reporter.enableStartButton(false);
    qDebug() << "Start Update button was pressed!";
    if (makeChooser())
        QtConcurrent::run([this] { runWorkflow(); });
    else
        declareEnded();
}

bool UpdateStarter::mayStart()
{
    Reporter &reporter = m_surroundings.reporter;
    if (m_surroundings.state.device().name.isEmpty() && !m_surroundings.state.bootloaderPresent()) {
        reporter.setStateTitle(UpdateTitles::startWithoutDevice);
        reporter.log(QStringLiteral("click UpdateBtn ERROR - Not Check Dev!"));
        return false;
    }
    m_hold = m_surroundings.lock.take(reporter);
    return m_hold != nullptr;
}

/// Makes the chooser of this run; false when the program is leaving instead.
bool UpdateStarter::makeChooser()
{
    m_chooser = std::make_unique<ChosefirmwareWidget>(m_surroundings.paths.manifestUrl);
    m_chooser->hide();
    return !Clock::real().isLeaving();
}

void UpdateStarter::runWorkflow()
{
    const Surroundings &s = m_surroundings;
    FirmwareFetch fetch(s.reporter, s.state, Clock::real(), s.paths, s.downloader, s.segmentWorker,
                        m_chooser.get());
    UpdateWorkflow workflow(s.reporter, s.state, s.host, Clock::real(), s.paths, s.launch, fetch);
    const UpdateWorkflow::Ending ending = workflow.run();
    if (ending != UpdateWorkflow::Ending::HandedOver)
        declareEnded();
    workflow.finish(ending);
}

void UpdateStarter::takeBack()
{
    if (m_handedOver.exchange(false))
        declareEnded();
}

void UpdateStarter::declareEnded()
{
    m_hold.reset();
    m_running = false;
}
