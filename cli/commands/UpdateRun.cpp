#include "cli/commands/UpdateRun.h"

#include "checks/Texts.h"
#include "cli/commands/CommandContext.h"
#include "cli/commands/ProgrammerRun.h"
#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "support/process/LaunchOptions.h"
#include "update/BootloaderEntry.h"
#include "update/FirmwareFetch.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"
#include "update/ModelChooser.h"
#include "update/SignatureCheck.h"
#include "update/UpdateWorkflow.h"
#include "update/md5Check.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QtConcurrent>

namespace {

/// Returns the model that the command line names, instead of asking the user.
class GivenModel : public ModelChooser
{
public:
    explicit GivenModel(const QString &model) : m_model(model) {}
    QString waitForChoice() override { return m_model; }

private:
    const QString m_model;
};

bool canRun(const QString &program)
{
    const QFileInfo file(program);
    return file.isFile() && file.isExecutable();
}

} // namespace

UpdateRun::UpdateRun(CommandContext &context, UpdateSession &session, CliReporter &reporter)
    : m_context(context),
      m_session(session),
      m_reporter(reporter),
      m_awake(Texts::pick("Firmware is being written to a device.", "正在向设备写入固件。"), 0,
              [&reporter](const QString &line) { reporter.log(line); })
{
    m_session.watchStages([this](UpdateStage stage) { onStageChanged(stage); });
}

UpdateRun::~UpdateRun()
{
    m_session.watchStages({});
}

UpdateSummary UpdateRun::run(const Target &target)
{
    m_summary = UpdateSummary();
    m_summary.model = target.found.bootloaderPresent ? m_context.options.model : target.found.device.name;
    m_summary.result = {UpdateResult::Outcome::Failed, UpdateStage::Idle, checkTool(target)};
    if (m_summary.result.reason == UpdateReason::None)
        m_summary.result.reason = prepareImage(target);
    if (m_summary.result.reason == UpdateReason::None) {
        m_choices.setFound(target.found.device, target.found.bootloaderPresent);
        m_choices.setWriteType(target.writeType);
        m_choices.setRestartCheckable(!m_context.options.noReset);
        if (m_session.begin(UpdateStage::Fetching, m_reporter)) {
            UpdateRequest request = m_choices.request();
            request.namedModel = m_context.options.model;
            request.requireSignature = m_context.options.requireSignature;
            runWorkflow(request);
            m_summary.result = m_session.lastResult();
            m_summary.seconds = m_session.lastSeconds();
        } else {
            m_summary.result.reason = UpdateReason::AnotherCopy;
        }
    }
    m_summary.exitCode = exitCodeOf(m_summary.result);
    return m_summary;
}

UpdateReason UpdateRun::checkTool(const Target &target) const
{
    const bool isIap = !target.found.bootloaderPresent && target.found.device.iapFlag != 0;
    QString tool =
        target.writeType == QLatin1String("HID") ? m_context.tools.hidFlasher : m_context.tools.usbFlasher;
    if (isIap)
        tool = m_context.tools.iapProgrammer;
    if (canRun(tool))
        return UpdateReason::None;
    m_reporter.log(QStringLiteral("The tool is missing or may not be run: ") + tool);
    return UpdateReason::ToolMissing;
}

/// Copies the image of --file, so that the bytes that are verified are the bytes that are written.
UpdateReason UpdateRun::prepareImage(const Target & /*target*/)
{
    const Options &options = m_context.options;
    m_choices.setLocalFileMode(!options.imageFile.isEmpty());
    if (options.requireSignature && firmwareKeys().isEmpty())
        return SignatureCheck(m_reporter, Clock::real(), {}).checkLocalImage({}, {}, true);
    if (options.imageFile.isEmpty())
        return UpdateReason::None;
    if (!QFileInfo(options.imageFile).isFile() || !QFileInfo(options.imageFile).isReadable()) {
        m_reporter.log(QStringLiteral("The image cannot be read: ") + options.imageFile);
        return UpdateReason::ImageUnreadable;
    }
    const QString copy =
        m_context.folder() + QLatin1String("/image.") + QFileInfo(options.imageFile).suffix();
    QFile::remove(copy);
    if (!QFile::copy(options.imageFile, copy)) {
        m_reporter.log(QStringLiteral("The image cannot be copied to ") + m_context.folder());
        return UpdateReason::FolderUnusable;
    }
    if (!options.imageSum.isEmpty() && md5Check::fileMd5(copy) != options.imageSum)
        return UpdateReason::ChecksumMismatch;
    if (!copySignature(copy)) {
        m_reporter.log(QStringLiteral("The signature cannot be copied to ") + m_context.folder());
        return UpdateReason::FolderUnusable;
    }
    m_choices.chooseImage({copy, FirmwareImage::Origin::User, !options.imageSum.isEmpty(), {}});
    return UpdateReason::None;
}

/// Copies the signature beside the image of --file, if there is one. Returns false if it cannot be copied.
bool UpdateRun::copySignature(const QString &imageCopy) const
{
    const QString copy = SignatureCheck::signatureFile(imageCopy);
    QFile::remove(copy);
    const QFileInfo signature(SignatureCheck::signatureFile(m_context.options.imageFile));
    if (firmwareKeys().isEmpty() || (!signature.exists() && !signature.isSymLink()))
        return true;
    return QFile::copy(signature.filePath(), copy);
}

UpdatePaths UpdateRun::paths() const
{
    const QString folder = m_context.folder();
    UpdatePaths paths;
    paths.applicationDir = folder;
    paths.temporaryFolder = folder + QLatin1String("/update");
    paths.usbFlasher = m_context.tools.usbFlasher;
    paths.hidFlasher = m_context.tools.hidFlasher;
    paths.manifestUrl = firmwareManifestUrl();
    paths.savedManifest = folder + QLatin1String("/manifest.json");
    paths.firmwareKeys = firmwareKeys();
    return paths;
}

void UpdateRun::runWorkflow(const UpdateRequest &request)
{
    const UpdatePaths updatePaths = paths();
    const LaunchOptions normalMode;
    FileDownloaderHTTP downloader(nullptr, &m_reporter);
    ThreadFileDownloader segments;
    segments.failWhenGivenUp = true;
    segments.progressWatcher = [this](qint64 bytes, qint64 total) {
        const int percent =
            total > 0 ? static_cast<int>(100.0 * static_cast<double>(bytes) / static_cast<double>(total)) : 0;
        m_context.sink.progress({percent, bytes, total});
    };
    GivenModel chooser(m_context.options.model);
    FirmwareFetch fetch(m_reporter, m_session, m_choices, Clock::real(), updatePaths, downloader, segments,
                        &chooser);
    const UpdateWorkflow::Dependencies dependencies{m_reporter,    m_session,   m_choices,  *this,
                                                    Clock::real(), updatePaths, normalMode, fetch};
    QEventLoop loop;
    QFutureWatcher<void> watcher;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run([&] { UpdateWorkflow(dependencies, request).run(); }));
    loop.exec();
    if (m_session.stage() == UpdateStage::AskingProgrammer)
        runProgrammer();
}

void UpdateRun::runProgrammer()
{
    ProgrammerRun(m_context, m_session, m_reporter).run(m_choices.device());
}

bool UpdateRun::sendUpdateMode()
{
    return sendUpdateModeReport(m_choices.device(), m_context.hid(),
                                reportLayoutFor(QOperatingSystemVersion::current()), m_reporter);
}

bool UpdateRun::startIapPanel()
{
    // Nothing to start here: run() starts the programmer once the workflow has returned.
    return true;
}

void UpdateRun::onStageChanged(UpdateStage stage)
{
    m_awake.onStageChanged(stage);
    if (stage == UpdateStage::Idle || stage == UpdateStage::ProgramClosed)
        return;
    m_context.sink.stage(stage);
    if (m_summary.sum.isEmpty() && !m_session.image().isEmpty())
        m_summary.sum = md5Check::fileMd5(m_session.image());
}
