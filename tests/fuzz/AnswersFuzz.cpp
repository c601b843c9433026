// Feeds whole answers of a server, including redirects, to the real download classes.

#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/OfferedBody.h"

#include "download/FileDownloader.h"
#include "download/FileDownloaderHTTP.h"
#include "download/FileSizeFetcher.h"
#include "simulator/files/WholeFile.h"
#include "simulator/server/AnswerServer.h"
#include "simulator/time/RunningTime.h"
#include "tests/common/RecordingReporter.h"

#include <QCoreApplication>
#include <QFile>
#include <QNetworkProxyFactory>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <algorithm>

namespace {

/// How long a client is observed after the last byte, and the stall timeout of a client that has one.
constexpr int quietMs = 15;

/// Redirects all connections to the server of the test, because an answer may contain the address of another
/// host.
class NowhereElse : public QNetworkProxyFactory
{
public:
    explicit NowhereElse(quint16 port) : m_port(port) {}
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        if (query.peerHostName() == QLatin1String("127.0.0.1") && query.peerPort() == m_port)
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return {QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), m_port)};
    }

private:
    quint16 m_port;
};

struct Input
{
    enum Client { Part, Size, Plain };
    Client client = Part;
    qint64 start = 0;
    qint64 length = 0; ///< 0 for the whole file
    QByteArray local;
    QList<AnswerServer::Answer> answers;
};

/// Five letters, each a number from 0 to 31: client, start in tens, length, size of the local file, size of a
/// piece of an answer (0 for all). Any character. The answers, at most four, with a record separator between
/// them; each begins with a letter: "o" leaves the connection open behind it.
Input readInput(const QByteArray &bytes)
{
    const auto number = [&bytes](int index) {
        return bytes.size() > index ? (bytes.at(index) - 'a') & 31 : 0;
    };
    Input input;
    input.client = Input::Client(number(0) % 3);
    input.start = 10 * number(1);
    input.length = number(2);
    input.local = QByteArray(number(3), '#');
    const QList<QByteArray> answers = bytes.mid(6).split('\x1e').mid(0, 4);
    for (const QByteArray &answer : answers)
        input.answers.append({answer.mid(1), !answer.startsWith('o'), number(4)});
    // The answer after them ends the test.
    input.answers.append({"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"});
    return input;
}

/// The objects that are used for all inputs.
struct Rig
{
    Rig() { QNetworkProxyFactory::setApplicationProxyFactory(new NowhereElse(server.serverPort())); }

    /// Processes events until the condition is true; aborts the program if that takes too long.
    template <typename Condition>
    static void waitUntil(const Condition &condition)
    {
        const RunningTimer waited;
        while (!condition()) {
            Fuzz::require(!waited.hasExpired(eventLimitMs), "everything ends");
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 2);
        }
    }
    /// Sends all answers and gives the client some time after the last one.
    template <typename Condition>
    void waitUntilQuiet(const Condition &hasEnded)
    {
        RunningTimer quiet;
        int before = server.requests();
        while (!hasEnded() && !quiet.hasExpired(quietMs)) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 2);
            if (server.requests() != before || server.isSending()) {
                before = server.requests();
                quiet.restart();
            }
        }
    }

    int argc = 1;
    char name[8] = "answers";
    char *argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file"));
    AnswerServer server;
};

/// Returns the answers that were sent, in order.
QList<OfferedBody> answersSent(const Input &input, int requests)
{
    QList<OfferedBody> sent;
    for (int i = 0; i < std::min(requests, input.answers.size()); ++i)
        sent.append(OfferedBody::read(input.answers.at(i).bytes, input.answers.at(i).closes));
    return sent;
}

bool areAllRegular(const QList<OfferedBody> &sent)
{
    return std::all_of(sent.begin(), sent.end(), [](const OfferedBody &each) { return each.isRegular; });
}

/// Returns whether a download may finish with `file` on disk after this answer.
bool mayFinish(const OfferedBody &answer, const Input &input, const QByteArray &file)
{
    if (answer.status == 416)
        return true;
    if (!answer.isSuccess() || !answer.isWhole || answer.isEncoded || answer.isMultipart)
        return false;
    if (!answer.isPart())
        return true;
    // A part without any bytes counts as finished, too; the MD5 check decides.
    const qint64 fileEnd = (input.length > 0 ? input.start : 0) + file.size();
    // A part is requested if there is a range or if there are bytes on disk.
    const bool wasAsked = input.length > 0 || *answer.first > 0;
    const bool isInPlace = *answer.first <= fileEnd && fileEnd <= *answer.first + answer.body.size();
    const bool broughtBytes = isInPlace && fileEnd > *answer.first;
    const bool isShort =
        input.length > 0 ? file.size() < input.length : answer.total && fileEnd < *answer.total;
    return wasAsked && isInPlace && !(broughtBytes && isShort);
}

void downloadPart(const Input &input, Rig &rig)
{
    if (!input.local.isEmpty())
        WholeFile::write(rig.path, input.local);
    FileDownloader downloader(rig.server.url(), rig.path);
    downloader.startByte = input.length > 0 ? input.start : 0;
    downloader.endByte = input.length > 0 ? input.start + input.length : 0;
    downloader.maxRetries = 3;
    downloader.retryDelay = 0;
    downloader.stallTimeout = quietMs;
    downloader.startDownload();
    Rig::waitUntil([&] { return downloader.hasGivenUp() || downloader.state == FileDownloader::Finished; });

    const QByteArray file = WholeFile::read(rig.path);
    const QList<OfferedBody> sent = answersSent(input, rig.server.requests());
    Fuzz::require(file.startsWith(input.local), "what was on disk stays");
    Fuzz::require(input.length == 0 || file.size() <= std::max<qint64>(input.length, input.local.size()),
                  "a part is no longer than its range");
    Fuzz::require(QFile::exists(rig.path) == !file.isEmpty(), "a file of no bytes is not made");
    const bool broughtBytes = file.size() > input.local.size();
    Fuzz::require(downloader.CurrentPackDownloadSize <= file.size(), "only bytes on disk are counted");
    Fuzz::require(!broughtBytes || downloader.CurrentPackDownloadSize == file.size(),
                  "all bytes on disk are counted");
    if (!areAllRegular(sent))
        return;
    for (int i = input.local.size(); i < file.size(); ++i) {
        const qint64 position = downloader.startByte + i;
        Fuzz::require(
            std::any_of(sent.begin(), sent.end(),
                        [&](const OfferedBody &each) { return each.byteAt(position) == file.at(i); }),
            "every byte was offered for its place");
    }
    if (downloader.state != FileDownloader::Finished || (input.length > 0 && file.size() >= input.length))
        return;
    // Each retry has used up one answer. Of those after it the last one counts, unless Qt has repeated a
    // request by itself, which it does if a connection is closed at the wrong moment.
    Fuzz::require(std::any_of(sent.begin() + std::min(downloader.retryCount, sent.size()), sent.end(),
                              [&](const OfferedBody &each) { return mayFinish(each, input, file); }),
                  "only a complete and plausible answer ends a download");
}

void fetchSize(const Input &input, Rig &rig)
{
    FileSizeFetcher fetcher(rig.server.url());
    fetcher.maxRetries = 3;
    fetcher.fetchFileSize();
    rig.waitUntilQuiet([&fetcher] {
        const QList<QNetworkReply *> replies = fetcher.findChildren<QNetworkReply *>();
        return std::none_of(replies.begin(), replies.end(),
                            [](const QNetworkReply *reply) { return reply->isRunning(); });
    });
    const QByteArray text = QByteArray::number(fetcher.fileSize);
    const bool wasGiven =
        std::any_of(input.answers.begin(), input.answers.end(),
                    [&text](const AnswerServer::Answer &each) { return each.bytes.contains(text); });
    Fuzz::require(fetcher.fileSize == 0 || wasGiven, "a size comes from an answer");
    const QList<OfferedBody> sent = answersSent(input, rig.server.requests());
    const bool anySuccess =
        std::any_of(sent.begin(), sent.end(), [](const OfferedBody &each) { return each.isSuccess(); });
    if (areAllRegular(sent))
        Fuzz::require(fetcher.fileSize == 0 || anySuccess, "no error page tells the size");
}

void fetchPlain(const Input &input, Rig &rig)
{
    RecordingReporter reporter;
    FileDownloaderHTTP downloader(nullptr, &reporter);
    emit downloader.sigDownloadFile(rig.server.url().toString(), rig.path);
    const auto hasFailed = [&reporter] {
        return !reporter.logLines().filter(QStringLiteral("Download finished with error:")).isEmpty();
    };
    const auto hasEnded = [&] {
        return downloader.succeeded || hasFailed();
    };
    rig.waitUntilQuiet(hasEnded);
    if (!hasEnded()) {
        downloader.abandonDownload(); // it may end by itself before that takes effect
        Rig::waitUntil([&] { return hasEnded() || !QFile::exists(rig.path); });
    }
    Fuzz::require(!(downloader.succeeded && hasFailed()), "a download ends once");
    Fuzz::require(QFile::exists(rig.path) == downloader.succeeded, "a failed download leaves no file");
    const QList<OfferedBody> sent = answersSent(input, rig.server.requests());
    if (!hasEnded() || !areAllRegular(sent))
        return;
    // More than one without a redirect: Qt has repeated the request by itself.
    const auto isWholeFile = [](const OfferedBody &each) {
        return each.isSuccess() && !each.isPart() && !each.isEncoded && each.isWhole;
    };
    if (downloader.succeeded) {
        const QByteArray file = WholeFile::read(rig.path);
        Fuzz::require(
            std::any_of(sent.begin(), sent.end(),
                        [&](const OfferedBody &each) { return isWholeFile(each) && file == each.body; }),
            "only a whole file is a success, and is what was sent");
    } else {
        Fuzz::require(!std::all_of(sent.begin(), sent.end(), isWholeFile), "a whole file is a success");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::silence();
    static Rig rig;
    const Input input = readInput(Fuzz::bytes(data, size));
    QFile::remove(rig.path);
    rig.server.setAnswers(input.answers);
    switch (input.client) {
    case Input::Part:
        downloadPart(input, rig);
        break;
    case Input::Size:
        fetchSize(input, rig);
        break;
    case Input::Plain:
        fetchPlain(input, rig);
        break;
    }
    rig.server.closeConnections();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
