// quillmarsh-fetch-clients plays many users at once. Each client downloads the manifest and then the image of
// a model in ten ranges, with the same classes as an update, and checks the image's sum. Writes a line for
// each client to a file: "complete MD5 RETRIES MILLISECONDS" or "failed REASON".

#include "download/FileDownloader.h"
#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "session/UpdateSession.h"
#include "simulator/time/RunningTime.h"
#include "support/LanguageUtilities.h"
#include "support/log/QuietReporter.h"
#include "update/FirmwareFetch.h"
#include "update/md5Check.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QThread>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

/// A clock that runs ten times slower than real time and does not count pauses of the machine. An update
/// waits at most 20 seconds for the manifest and for the size, which suffices for a program that has a
/// processor to itself; these clients share two processors with hundreds of others and with the servers.
class SlowClock : public Clock
{
public:
    qint64 nowMs() const override { return RunningClock::ofThisProcess().nowMs() / 10; }
    bool sleepMs(int milliseconds) override
    {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
        return true;
    }
    bool isShuttingDown() const override { return false; }
};

/// Keeps the last log lines, which say why a fetch failed.
class LastLines : public QuietReporter
{
public:
    void log(const QString &line) override
    {
        m_lines.append(line.left(200));
        if (m_lines.size() > 3)
            m_lines.removeFirst();
    }
    QString text() const { return m_lines.join(QStringLiteral(" | ")); }

private:
    QStringList m_lines;
};

/// One user, with folders, session and downloaders of their own. The object lives on the main thread, where
/// the manifest is downloaded as in the program. run() is called on another thread.
class Client
{
public:
    Client(const QString &folder, const QString &manifestUrl, const QString &model)
        : m_lock(folder + QStringLiteral("/lock"))
    {
        m_paths.applicationDir = folder;
        m_paths.savedManifest = folder + QStringLiteral("/qmake/dev.jn");
        m_paths.temporaryFolder = folder + QStringLiteral("/temporary");
        m_paths.manifestUrl = manifestUrl;
        QDir().mkpath(m_paths.temporaryFolder + QStringLiteral("/tmp"));
        for (const QString &made :
             {folder, m_paths.temporaryFolder, m_paths.temporaryFolder + QStringLiteral("/tmp")})
            QFile::setPermissions(made, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_request.device.name = model;
        m_worker.failWhenGivenUp = true;
    }

    void run()
    {
        const RunningTimer taken;
        SlowClock clock;
        FirmwareFetch fetch(m_reporter, m_session, m_choices, clock, m_paths, m_downloader, m_worker,
                            nullptr);
        QJsonObject manifest;
        const QString path = fetch.fetchFirmware(m_request, &manifest);
        const QString sum = md5Check::fileMd5(path);
        if (!path.isEmpty() && md5Check(m_reporter).checkMd5(path, manifest, fetch.deviceKey()))
            m_result = QStringLiteral("complete %1 %2 %3").arg(sum).arg(retries()).arg(taken.elapsed());
        else
            m_result = QStringLiteral("failed ") + m_reporter.text();
        QFile::remove(path);
    }

    QString result() const { return m_result; }

private:
    int retries() const
    {
        int sum = 0;
        for (const FileDownloader *segment : m_worker.segments)
            sum += segment->retryCount;
        return sum;
    }

    LastLines m_reporter;
    QuietReporter m_manifestReporter;
    UpdatePaths m_paths;
    UpdateLock m_lock;
    UpdateSession m_session{m_lock};
    UpdateChoices m_choices;
    UpdateRequest m_request;
    FileDownloaderHTTP m_downloader{nullptr, &m_manifestReporter};
    ThreadFileDownloader m_worker;
    QString m_result;
};

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(ignoreMessage);
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const auto option = [](const char *name, const char *what) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(what), QStringLiteral("value"));
    };
    const QCommandLineOption manifest = option("manifest", "Address of the manifest.");
    const QCommandLineOption model = option("model", "The model to fetch.");
    const QCommandLineOption count = option("count", "The number of clients.");
    const QCommandLineOption authority = option("authority", "The only certificate authority to trust.");
    const QCommandLineOption folder = option("folder", "An empty folder for temporary files.");
    const QCommandLineOption results = option("results", "The file for the results.");
    parser.addOptions({manifest, model, count, authority, folder, results});
    parser.process(application);

    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setCaCertificates(QSslCertificate::fromPath(parser.value(authority)));
    QSslConfiguration::setDefaultConfiguration(trust);
    LanguageUtilities::instance(); // Make it before the threads share it.

    std::vector<std::unique_ptr<Client>> clients;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < parser.value(count).toInt(); ++i) {
        const QString own = parser.value(folder) + QLatin1Char('/') + QString::number(i);
        QDir().mkpath(own);
        clients.push_back(std::make_unique<Client>(own, parser.value(manifest), parser.value(model)));
        threads.emplace_back(QThread::create([client = clients.back().get()] { client->run(); }));
    }
    size_t running = threads.size();
    for (const auto &thread : threads) {
        QObject::connect(thread.get(), &QThread::finished, &application, [&running] {
            if (--running == 0)
                QCoreApplication::quit();
        });
        thread->start();
    }
    if (!threads.empty())
        QCoreApplication::exec();

    QSaveFile file(parser.value(results));
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    for (size_t i = 0; i < clients.size(); ++i) {
        threads[i]->wait();
        file.write(clients[i]->result().simplified().toUtf8() + '\n');
    }
    return file.commit() ? 0 : 1;
}
