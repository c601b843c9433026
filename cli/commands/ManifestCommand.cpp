#include "cli/commands/ManifestCommand.h"

#include "checks/DeviceFindings.h"
#include "checks/ManifestFindings.h"
#include "checks/ServerCheck.h"
#include "checks/SignatureFindings.h"
#include "checks/WebRequest.h"
#include "cli/commands/CommandContext.h"
#include "cli/output/CliReporter.h"
#include "download/ThreadFileDownloader.h"
#include "signature/ImageVerifier.h"
#include "support/Clock.h"
#include "support/process/ShutdownFlag.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareManifest.h"
#include "update/FirmwareServerAddress.h"
#include "update/md5Check.h"

#include <QEventLoop>
#include <QFile>
#include <QtConcurrent>

#include <optional>

namespace {

/// Checks one manifest and reports each finding as soon as there is one.
class Verification
{
public:
    explicit Verification(CommandContext &context)
        : m_context(context),
          m_reporter(context.sink, context.options.logFile)
    {
    }

    ExitCode run();

private:
    void verifyEntry(const QString &model, const QJsonObject &root);
    void verifyImage(const QString &model, const QString &address, const QJsonObject &root);
    void fetchImage(const QString &model, const QString &address, const QJsonObject &root);
    bool report(const Finding &finding)
    {
        m_context.sink.finding(finding);
        m_findings.append(finding);
        return finding.verdict != Finding::Verdict::Problem;
    }

    CommandContext &m_context;
    CliReporter m_reporter;
    QVector<Finding> m_findings;
};

ExitCode Verification::run()
{
    const QString source =
        m_context.options.manifest.isEmpty() ? firmwareManifestUrl() : m_context.options.manifest;
    const ServerCheck::Manifest manifest = WebRequest::isAddress(source) ? ServerCheck::fetchManifest(source)
                                                                         : ServerCheck::readManifest(source);
    for (const Finding &finding : manifest.findings)
        report(finding);
    const QStringList models = FirmwareManifest::downloadUrls(manifest.root).keys();
    for (const QString &model : models) {
        if (ShutdownFlag::instance().isRaised())
            return ExitCode::Interrupted;
        verifyEntry(model, manifest.root);
    }
    if (ShutdownFlag::instance().isRaised())
        return ExitCode::Interrupted;
    return exitCodeOf(m_findings, ExitCode::FirmwareUnusable);
}

void Verification::verifyEntry(const QString &model, const QJsonObject &root)
{
    const QJsonObject versions = root.value(QLatin1String("CurrentVersion")).toObject();
    const QVector<Finding> findings =
        ManifestFindings::entry(model, versions.value(model), DeviceFindings::isKnownModel(model));
    for (const Finding &finding : findings)
        report(finding);
    if (!firmwareKeys().isEmpty())
        report(SignatureFindings::signature(model + QLatin1String("/signature"),
                                            FirmwareManifest::signature(root, model), model, firmwareKeys()));
    const QString fileUrl = FirmwareManifest::fileAddress(root, model).url;
    if (WebRequest::isAddress(fileUrl))
        verifyImage(model, fileUrl, root);
    const QString downloadUrl = FirmwareManifest::downloadUrls(root).value(model);
    if (WebRequest::isAddress(downloadUrl) && downloadUrl != fileUrl)
        report(ServerCheck::checkAddress(model + QLatin1String("/download"), downloadUrl));
}

void Verification::verifyImage(const QString &model, const QString &address, const QJsonObject &root)
{
    const bool exists = report(ServerCheck::checkImage(model + QLatin1String("/image"), address).finding);
    if (m_context.options.download && exists && !ShutdownFlag::instance().isRaised())
        fetchImage(model, address, root);
}

/// Downloads and verifies the image in the same way as an update.
void Verification::fetchImage(const QString &model, const QString &address, const QJsonObject &root)
{
    constexpr int segmentCount = 10;
    const QString file = m_context.folder() + QLatin1String("/image");
    const QByteArray signature = FirmwareManifest::signature(root, model).toUtf8();
    ThreadFileDownloader downloader;
    downloader.failWhenGivenUp = true;
    downloader.url = address;
    downloader.savePath = file;
    QString sum;
    std::optional<ImageVerifier::Result> verified;
    const auto fetch = [&] {
        if (m_context.folder().isEmpty() || !downloader.downloadInSegments(segmentCount, &m_reporter))
            return;
        sum = md5Check::fileMd5(file);
        if (!firmwareKeys().isEmpty() && !signature.isEmpty())
            verified = ImageVerifier(firmwareKeys()).verifyImage(file, signature, model, Clock::real());
    };
    QEventLoop loop;
    QFutureWatcher<void> watcher;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run(fetch));
    loop.exec();
    QFile::remove(file);
    report(ImageFindings::fetchedSum(model + QLatin1String("/sum"), FirmwareManifest::md5(root, model), sum));
    if (verified)
        report(SignatureFindings::verification(model + QLatin1String("/signed-image"), *verified, model));
}

} // namespace

ExitCode runManifestCommand(CommandContext &context)
{
    return Verification(context).run();
}
