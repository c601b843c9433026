// Tests the simulated firmware server, on which the tests of the downloads rely, with a plain socket.

#include "harness/process/Polling.h"
#include "tests/download/DownloadTest.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QTcpSocket>

namespace {

class FirmwareServerTest : public DownloadTest
{
protected:
    FirmwareServerTest() { serve(QStringLiteral("/file.bin"), m_content); }

    static QByteArray request(const QByteArray &path, const QByteArray &range = QByteArray())
    {
        return "GET " + path + " HTTP/1.1\r\nHost: x\r\n" +
               (range.isEmpty() ? "" : "Range: " + range + "\r\n") + "\r\n";
    }
    void connectTo(QTcpSocket &socket)
    {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server().port());
        ASSERT_TRUE(socket.waitForConnected(eventLimitMs));
    }
    /// Returns the bytes that arrive until the connection ends or `quietMs` of running time pass without a
    /// byte.
    static QByteArray receive(QTcpSocket &socket, int quietMs = 150)
    {
        QByteArray all;
        const auto hasReadOrEnded = [&](int ms) {
            return socket.waitForReadyRead(ms) || socket.state() != QAbstractSocket::ConnectedState;
        };
        while (waitInShortSteps(hasReadOrEnded, quietMs) && socket.bytesAvailable() > 0)
            all += socket.readAll();
        return all + socket.readAll();
    }
    QByteArray ask(const QByteArray &range = QByteArray(), const QByteArray &path = "/file.bin")
    {
        QTcpSocket socket;
        connectTo(socket);
        socket.write(request(path, range));
        const QByteArray reply = receive(socket);
        m_error = socket.error();
        m_isOpen = socket.state() == QAbstractSocket::ConnectedState;
        return reply;
    }
    static QByteArray body(const QByteArray &reply) { return reply.mid(reply.indexOf("\r\n\r\n") + 4); }

    const QByteArray m_content = someBytes(1000);
    QAbstractSocket::SocketError m_error = QAbstractSocket::UnknownSocketError;
    bool m_isOpen = false;
};

TEST_F(FirmwareServerTest, AFileIsSentWithItsLengthAndTheConnectionIsKept)
{
    QTcpSocket socket;
    connectTo(socket);
    for (int i = 0; i < 2; ++i) {
        socket.write(request("/file.bin"));
        const QByteArray reply = receive(socket);
        EXPECT_TRUE(reply.startsWith("HTTP/1.1 200 OK\r\n"));
        EXPECT_TRUE(reply.contains("Content-Length: 1000\r\n"));
        EXPECT_EQ(body(reply), m_content);
    }
    EXPECT_EQ(server().openConnections(), 1);
    const auto requests = server().requests();
    ASSERT_EQ(requests.size(), 2);
    EXPECT_EQ(requests.first().method, "GET");
    EXPECT_EQ(requests.first().path, "/file.bin");
    EXPECT_EQ(requests.first().header("HOST"), "x");
    EXPECT_LE(requests.at(0).atMs, requests.at(1).atMs);
}

TEST_F(FirmwareServerTest, RangesAreAnsweredAsRequested)
{
    const struct
    {
        const char *range;
        const char *status;
        const char *contentRange;
        int first, length;
    } cases[] = {
        {"bytes=10-19", "206", "bytes 10-19/1000", 10, 10},
        {"bytes=990-", "206", "bytes 990-999/1000", 990, 10},
        {"bytes=990-5000", "206", "bytes 990-999/1000", 990, 10},
        {"bytes=0-0", "206", "bytes 0-0/1000", 0, 1},
        {"bytes=5-4", "200", nullptr, 0, 1000},
        {"lines=1-2", "200", nullptr, 0, 1000},
    };
    for (const auto &each : cases) {
        const QByteArray reply = ask(each.range);
        EXPECT_TRUE(reply.startsWith(QByteArray("HTTP/1.1 ") + each.status)) << each.range;
        EXPECT_EQ(reply.contains("Content-Range:"), each.contentRange != nullptr) << each.range;
        if (each.contentRange) {
            EXPECT_TRUE(reply.contains(QByteArray("Content-Range: ") + each.contentRange)) << each.range;
        }
        EXPECT_EQ(body(reply), m_content.mid(each.first, each.length)) << each.range;
    }
    const QByteArray beyond = ask("bytes=1000-");
    EXPECT_TRUE(beyond.startsWith("HTTP/1.1 416"));
    EXPECT_TRUE(beyond.contains("Content-Range: bytes */1000"));
}

TEST_F(FirmwareServerTest, NothingOutsideTheFolderIsServed)
{
    EXPECT_TRUE(ask({}, "/none").startsWith("HTTP/1.1 404"));
    EXPECT_TRUE(ask({}, "/../../../../../../etc/hostname").startsWith("HTTP/1.1 404"));
    EXPECT_TRUE(ask({}, "/%2e%2e/%2e%2e/%2e%2e/%2e%2e/etc/hostname").startsWith("HTTP/1.1 404"));
    EXPECT_TRUE(ask({}, "/").startsWith("HTTP/1.1 404"));
}

TEST_F(FirmwareServerTest, EachCutSendsExactlyTheGivenNumberOfBytes)
{
    fault("close-after:bytes=7,times=1");
    QByteArray reply = ask();
    EXPECT_TRUE(reply.contains("Content-Length: 1000\r\n"));
    EXPECT_EQ(body(reply), m_content.left(7));
    EXPECT_EQ(m_error, QAbstractSocket::RemoteHostClosedError);
    EXPECT_FALSE(m_isOpen);

    server().clearFaults();
    fault("stall-after:bytes=7");
    reply = ask();
    EXPECT_EQ(body(reply), m_content.left(7));
    EXPECT_TRUE(m_isOpen);

    server().clearFaults();
    fault("stall");
    EXPECT_TRUE(ask().isEmpty());
    EXPECT_TRUE(m_isOpen);

    server().clearFaults();
    fault("refuse");
    EXPECT_TRUE(ask().isEmpty());
    EXPECT_FALSE(m_isOpen);
}

TEST_F(FirmwareServerTest, FaultsChangeTheAnswersAsTheirNamesSay)
{
    const struct
    {
        const char *fault;
        const char *beginning;
        const char *contains;
        QByteArray body;
    } cases[] = {
        {"short-206:bytes=3", "HTTP/1.1 206", "Content-Range: bytes 10-12/1000", m_content.mid(10, 3)},
        {"ignore-range", "HTTP/1.1 200", "Content-Length: 1000", m_content},
        {"redirect:to=/x", "HTTP/1.1 302", "Location: /x", "<html>elsewhere</html>\n"},
        {"404", "HTTP/1.1 404", "", "no such file\n"},
        {"416", "HTTP/1.1 416", "", "no such range\n"},
        {"503", "HTTP/1.1 503", "text/html", "<html><body><h1>Service Unavailable</h1></body></html>\n"},
        {"chunked", "HTTP/1.1 206", "Transfer-Encoding: chunked",
         "a\r\n" + m_content.mid(10, 10) + "\r\n0\r\n\r\n"},
        {"no-length", "HTTP/1.1 206", "Connection: close", m_content.mid(10, 10)},
        {"slow-drip:bytes=4,ms=1", "HTTP/1.1 206", "", m_content.mid(10, 10)},
        {"header:name=X-Extra,value=1", "HTTP/1.1 206", "X-Extra: 1", m_content.mid(10, 10)},
    };
    for (const auto &each : cases) {
        server().clearFaults();
        fault(each.fault);
        const QByteArray reply = ask("bytes=10-19");
        EXPECT_TRUE(reply.startsWith(each.beginning)) << each.fault;
        EXPECT_TRUE(reply.contains(each.contains)) << each.fault;
        EXPECT_EQ(body(reply), each.body) << each.fault;
    }
    EXPECT_FALSE(ask("bytes=10-19").isEmpty());
}

TEST_F(FirmwareServerTest, AFaultAffectsOnlyTheSelectedRequests)
{
    serve(QStringLiteral("/other.bin"), m_content);
    fault("404:path=/f*.bin,range=3,nth=2,times=1");
    const auto isHit = [this](const char *range, const char *path = "/file.bin") {
        return ask(range, path).startsWith("HTTP/1.1 404");
    };
    EXPECT_FALSE(isHit("bytes=300-399")) << "the first match";
    EXPECT_FALSE(isHit("bytes=200-299")) << "another range";
    EXPECT_FALSE(isHit("", "/file.bin")) << "no range";
    EXPECT_FALSE(isHit("bytes=300-399", "/other.bin")) << "another path";
    EXPECT_TRUE(isHit("bytes=399-399")) << "the second match";
    EXPECT_FALSE(isHit("bytes=300-399")) << "it affects one request only";
}

TEST_F(FirmwareServerTest, AnInvalidFaultIsRejectedWithAReason)
{
    for (const char *text : {"", "nothing", "404:times=x", "404:times=-1", "404:sometimes=1", "404:times"}) {
        QString error;
        EXPECT_FALSE(server().addFault(QString::fromUtf8(text), &error)) << text;
        EXPECT_FALSE(error.isEmpty()) << text;
    }
}

TEST_F(FirmwareServerTest, TheProgramPrintsItsPortServesAndEndsWithItsInput)
{
    QTemporaryDir folder;
    write(folder.filePath(QStringLiteral("file.bin")), m_content);
    QProcess program;
    program.start(QStringLiteral(SIM_SERVER_PROGRAM),
                  {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--root"), folder.path(),
                   QStringLiteral("--fault"), QStringLiteral("503:nth=2")});
    ASSERT_TRUE(program.waitForReadyRead(eventLimitMs));
    const QByteArray line = program.readLine();
    ASSERT_TRUE(line.startsWith("{\"port\":") && line.endsWith("}\n")) << line.constData();
    const quint16 port = line.mid(8, line.size() - 10).toUShort();
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    ASSERT_TRUE(socket.waitForConnected(eventLimitMs));
    socket.write(request("/file.bin"));
    EXPECT_EQ(body(receive(socket)), m_content);
    socket.write(request("/file.bin"));
    EXPECT_TRUE(receive(socket).startsWith("HTTP/1.1 503"));
    program.closeWriteChannel();
    ASSERT_TRUE(waitForEnd(program));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(FirmwareServerTest, TheProgramRejectsAnUnknownFault)
{
    QProcess program;
    program.start(QStringLiteral(SIM_SERVER_PROGRAM), {QStringLiteral("--port"), QStringLiteral("0"),
                                                       QStringLiteral("--fault"), QStringLiteral("nothing")});
    ASSERT_TRUE(waitForEnd(program));
    EXPECT_EQ(program.exitCode(), 2);
    EXPECT_EQ(program.readAllStandardError(), "no such fault: nothing\n");
}

} // namespace
