#include "simulator/server/ServerReply.h"

#include <QFile>

#include <algorithm>

namespace {

struct Reason
{
    int status;
    const char *text;
};

constexpr Reason reasons[] = {
    {200, "OK"},
    {206, "Partial Content"},
    {302, "Found"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {416, "Range Not Satisfiable"},
    {503, "Service Unavailable"},
};

QByteArray reasonOf(int status)
{
    const auto *found = std::find_if(std::begin(reasons), std::end(reasons),
                                     [status](const Reason &reason) { return reason.status == status; });
    return found == std::end(reasons) ? QByteArray("Unknown") : QByteArray(found->text);
}

} // namespace

void ServerReply::setHeader(const QByteArray &name, const QByteArray &value)
{
    removeHeader(name);
    headers.append({name, value});
}

void ServerReply::removeHeader(const QByteArray &name)
{
    headers.erase(std::remove_if(headers.begin(), headers.end(),
                                 [&name](const auto &header) { return header.first == name; }),
                  headers.end());
}

void ServerReply::setPage(int newStatus, const QByteArray &type, const QByteArray &page)
{
    status = newStatus;
    removeHeader("Content-Range");
    setHeader("Content-Type", type);
    setHeader("Content-Length", QByteArray::number(page.size()));
    body = page;
}

void ServerReply::setPart(const QByteArray &bytes, qint64 first, qint64 size, bool isPart)
{
    status = isPart ? 206 : 200;
    body = bytes;
    firstByte = first;
    fileSize = size;
    setHeader("Content-Length", QByteArray::number(bytes.size()));
    removeHeader("Content-Range");
    if (isPart)
        setHeader("Content-Range", "bytes " + QByteArray::number(first) + '-' +
                                       QByteArray::number(first + bytes.size() - 1) + '/' +
                                       QByteArray::number(size));
}

QByteArray ServerReply::head() const
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonOf(status) + "\r\n";
    for (const auto &header : headers)
        text += header.first + ": " + header.second + "\r\n";
    return text + "\r\n";
}

ServerReply ServerReply::forFile(const ServerRequest &request, const QString &fileName)
{
    ServerReply reply;
    reply.fileName = fileName;
    if (request.method != "GET") {
        reply.setPage(405, "text/plain", "only GET\n");
        return reply;
    }
    QFile file(fileName);
    if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        reply.setPage(404, "text/plain", "no such file\n");
        return reply;
    }
    const qint64 size = file.size();
    reply.setHeader("Accept-Ranges", "bytes");
    reply.setHeader("Content-Type", "application/octet-stream");
    const auto range = RequestedRange::parse(request.header("Range"));
    if (!range) {
        reply.setPart(file.readAll(), 0, size, false);
    } else if (range->first >= size) {
        reply.setPage(416, "text/plain", "no such range\n");
        reply.setHeader("Content-Range", "bytes */" + QByteArray::number(size));
    } else {
        const qint64 last = range->last < 0 ? size - 1 : std::min(range->last, size - 1);
        file.seek(range->first);
        reply.setPart(file.read(last - range->first + 1), range->first, size, true);
    }
    return reply;
}
