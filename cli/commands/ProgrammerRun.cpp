#include "cli/commands/ProgrammerRun.h"

#include "cli/commands/CommandContext.h"
#include "cli/output/CliReporter.h"
#include "iap/IapProgrammer.h"
#include "session/UpdateSession.h"
#include "support/process/ShutdownFlag.h"

#include <QEventLoop>

namespace {

UpdateReason reasonOf(IapProgrammer::StartResult result)
{
    switch (result) {
    case IapProgrammer::StartResult::Started:
        return UpdateReason::None;
    case IapProgrammer::StartResult::NotABinFile:
        return UpdateReason::ImageRefused;
    case IapProgrammer::StartResult::AlreadyRunning:
    case IapProgrammer::StartResult::NotStarted:
        break;
    }
    return UpdateReason::ToolNotStarted;
}

} // namespace

ProgrammerRun::ProgrammerRun(CommandContext &context, UpdateSession &session, CliReporter &reporter)
    : m_context(context),
      m_session(session),
      m_reporter(reporter)
{
}

void ProgrammerRun::run(const ChosenDevice &device)
{
    using Afterwards = UpdateSession::Afterwards;
    const auto log = [this](const QString &line) {
        m_reporter.log(line);
    };
    IapProgrammer programmer({m_context.tools.iapProgrammer, m_reporter, log, m_session.lock()});
    std::optional<IapRun> record = programmer.prepare({true, device.productId, device.vendorId});
    if (!record) {
        m_session.end(UpdateReason::ProgramClosed, Afterwards::ProgramClosed, {});
        return;
    }
    // The same settings as in the window's IAP panel for a USB device.
    record->portType = QStringLiteral("USB");
    record->crcVerify = true;
    record->updateFile = m_session.image();
    const IapArguments::Fields fields{
        {}, record->usbDevices.isEmpty() ? -1 : 0, {}, QStringLiteral("08004000"), true};

    QEventLoop loop;
    QObject::connect(&programmer, &IapProgrammer::outputReady, &programmer, &IapProgrammer::readOutput);
    QObject::connect(&programmer, &IapProgrammer::exited, &loop, [&](int exitCode) {
        programmer.conclude(exitCode);
        loop.quit();
    });
    const ShutdownFlag &flag = ShutdownFlag::instance();
    QObject::connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    const IapProgrammer::StartResult started = programmer.start(*record, fields);
    if (started != IapProgrammer::StartResult::Started) {
        m_session.end(reasonOf(started), Afterwards::Idle, {});
        return;
    }
    m_session.enter(UpdateStage::Programming);
    if (!flag.isRaised())
        loop.exec();
    if (flag.isRaised())
        m_session.end(UpdateReason::ProgramClosed, Afterwards::ProgramClosed, {});
    else
        m_session.end(programmer.verdict(), Afterwards::Idle, {});
}
