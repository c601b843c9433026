#include "simulator/server/ServerFault.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {

using Ending = ServerReply::Ending;

void endAfter(ServerReply &reply, const ServerFault &fault, Ending ending)
{
    reply.cutAfter = std::min<qint64>(fault.bytes, reply.body.size());
    reply.ending = ending;
}

struct FaultKind
{
    const char *name;
    const char *keys;
    const char *what;
    /// Null for the fault that occurs before there is a reply.
    void (*apply)(ServerReply &reply, const ServerFault &fault);
};

const FaultKind kinds[] = {
    {"refuse", "", "closes the connection as soon as it is accepted", nullptr},
    {"stall", "", "reads the request and never answers",
     [](ServerReply &reply, const ServerFault &) {
         reply.answers = false;
         reply.ending = Ending::Stall;
     }},
    {"stall-after", "bytes", "sends so many bytes of the body, then nothing more",
     [](ServerReply &reply, const ServerFault &fault) {
         endAfter(reply, fault, Ending::Stall);
     }},
    {"reset-after", "bytes", "sends so many bytes of the body, then resets the connection",
     [](ServerReply &reply, const ServerFault &fault) {
         endAfter(reply, fault, Ending::Reset);
     }},
    {"close-after", "bytes", "sends so many bytes of the body, fewer than announced, then closes",
     [](ServerReply &reply, const ServerFault &fault) {
         endAfter(reply, fault, Ending::Close);
     }},
    {"short-206", "bytes", "answers a range with so many bytes of it only, and says so",
     [](ServerReply &reply, const ServerFault &fault) {
         if (reply.status == 206 && reply.body.size() > fault.bytes)
             reply.setPart(reply.body.left(int(fault.bytes)), reply.firstByte, reply.fileSize, true);
     }},
    {"ignore-range", "", "answers 200 with the whole file",
     [](ServerReply &reply, const ServerFault &) {
         QFile file(reply.fileName);
         if (file.open(QIODevice::ReadOnly))
             reply.setPart(file.readAll(), 0, file.size(), false);
     }},
    {"redirect", "to", "answers 302 with that path or address",
     [](ServerReply &reply, const ServerFault &fault) {
         reply.setPage(302, "text/html", "<html>elsewhere</html>\n");
         reply.setHeader("Location", fault.to.toUtf8());
     }},
    {"404", "", "answers 404",
     [](ServerReply &reply, const ServerFault &) {
         reply.setPage(404, "text/plain", "no such file\n");
     }},
    {"416", "", "answers 416",
     [](ServerReply &reply, const ServerFault &) {
         reply.setPage(416, "text/plain", "no such range\n");
     }},
    {"503", "", "answers 503 with a page of HTML",
     [](ServerReply &reply, const ServerFault &) {
         reply.setPage(503, "text/html", "<html><body><h1>Service Unavailable</h1></body></html>\n");
     }},
    {"chunked", "", "sends the body in chunks, without a length",
     [](ServerReply &reply, const ServerFault &) {
         reply.removeHeader("Content-Length");
         reply.setHeader("Transfer-Encoding", "chunked");
         reply.chunked = true;
     }},
    {"slow-drip", "bytes,ms", "sends so many bytes (default 1024) every so many milliseconds (default 10)",
     [](ServerReply &reply, const ServerFault &fault) {
         reply.dripBytes = fault.bytes > 0 ? fault.bytes : 1024;
         reply.dripMs = fault.ms;
     }},
    {"no-length", "", "announces no length; the close of the connection ends the body",
     [](ServerReply &reply, const ServerFault &) {
         reply.removeHeader("Content-Length");
         reply.setHeader("Connection", "close");
         reply.ending = Ending::Close;
     }},
    {"header", "name,value", "sets a header of the answer, whatever the truth is",
     [](ServerReply &reply, const ServerFault &fault) {
         reply.setHeader(fault.name.toUtf8(), fault.value.toUtf8());
     }},
};

struct Key
{
    const char *name;
    /// Parses the value. Returns false if it is invalid.
    bool (*read)(ServerFault &fault, const QString &value);
};

template <auto Member>
bool readText(ServerFault &fault, const QString &value)
{
    fault.*Member = value;
    return true;
}

template <auto Member>
bool readNumber(ServerFault &fault, const QString &value)
{
    bool isNumber = false;
    fault.*Member = value.toInt(&isNumber);
    return isNumber && fault.*Member >= 0;
}

const Key keys[] = {
    {"path", readText<&ServerFault::path>},     {"to", readText<&ServerFault::to>},
    {"name", readText<&ServerFault::name>},     {"value", readText<&ServerFault::value>},
    {"range", readNumber<&ServerFault::range>}, {"of", readNumber<&ServerFault::of>},
    {"nth", readNumber<&ServerFault::nth>},     {"times", readNumber<&ServerFault::times>},
    {"bytes", readNumber<&ServerFault::bytes>}, {"ms", readNumber<&ServerFault::ms>},
    {"whole", readNumber<&ServerFault::whole>},
};

template <typename Table>
auto findNamed(const Table &table, const QString &name)
{
    return std::find_if(std::begin(table), std::end(table),
                        [&name](const auto &entry) { return name == QLatin1String(entry.name); });
}

} // namespace

std::optional<ServerFault> ServerFault::parse(const QString &text, QString *error)
{
    const QString kindName = text.section(QLatin1Char(':'), 0, 0);
    const auto *kind = findNamed(kinds, kindName);
    if (kind == std::end(kinds)) {
        *error = QStringLiteral("no such fault: %1").arg(kindName);
        return std::nullopt;
    }
    ServerFault fault;
    fault.m_kind = int(kind - std::begin(kinds));
    const QStringList options = text.section(QLatin1Char(':'), 1).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &option : options) {
        const auto *key = findNamed(keys, option.section(QLatin1Char('='), 0, 0));
        if (key == std::end(keys) || !key->read(fault, option.section(QLatin1Char('='), 1))) {
            *error = QStringLiteral("not understood: %1 in %2").arg(option, text);
            return std::nullopt;
        }
    }
    return fault;
}

QString ServerFault::help()
{
    QString text;
    for (const FaultKind &kind : kinds)
        text += QStringLiteral("  %1 %2 %3\n")
                    .arg(QLatin1String(kind.name), -13)
                    .arg(QLatin1String(kind.keys), -11)
                    .arg(QLatin1String(kind.what));
    return text;
}

bool ServerFault::isAtAccept() const
{
    return kinds[m_kind].apply == nullptr;
}

bool ServerFault::registerRequest(const ServerRequest &request, qint64 fileSize)
{
    if (!isAtAccept()) {
        const QRegularExpression pattern(
            QRegularExpression::anchoredPattern(QRegularExpression::escape(path)
                                                    .replace(QStringLiteral("\\*"), QStringLiteral(".*"))
                                                    .replace(QStringLiteral("\\?"), QStringLiteral("."))));
        if (!pattern.match(QString::fromUtf8(request.path)).hasMatch())
            return false;
        if (whole != 0 && !request.header("Range").isEmpty())
            return false;
        if (range >= 0) {
            const auto asked = RequestedRange::parse(request.header("Range"));
            const qint64 part = std::max<qint64>(1, fileSize / std::max(1, of));
            if (!asked || std::min<qint64>(asked->first / part, of - 1) != range)
                return false;
        }
    }
    ++m_matches;
    if (m_matches < nth || (times >= 0 && m_strikes >= times))
        return false;
    ++m_strikes;
    return true;
}

void ServerFault::apply(ServerReply &reply) const
{
    if (kinds[m_kind].apply)
        kinds[m_kind].apply(reply, *this);
}
