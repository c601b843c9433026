#pragma once

#include "simulator/server/FirmwareServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

/// A loopback server with one file, and a folder to fetch it to.
class DownloadTest : public testing::Test
{
protected:
    DownloadTest() { EXPECT_TRUE(m_server.listen()); }

    static void write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write(content);
    }
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    /// Bytes that differ wherever they are, so that a shifted or doubled piece shows.
    static QByteArray distinctBytes(int size)
    {
        QByteArray bytes(size, '\0');
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>((i * 7 + (i >> 8) * 13 + (i >> 16) * 29) & 0xFF);
        return bytes;
    }
    QByteArray serve(const QByteArray &content)
    {
        write(m_root.filePath(QStringLiteral("file")), content);
        return content;
    }
    void setFault(const char *text)
    {
        QString error;
        EXPECT_TRUE(m_server.addFault(QString::fromUtf8(text), &error)) << error.toStdString();
    }
    QUrl url() const { return m_server.url(QStringLiteral("/file")); }
    QString local(const char *name = "local") const { return m_folder.filePath(QLatin1String(name)); }

    /// Lets events through until `holds`; false when it does not within the limit.
    template <typename F>
    static bool waitUntil(F holds, int limitMs = 20000)
    {
        const QDeadlineTimer limit(limitMs);
        while (!holds()) {
            if (limit.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            QThread::msleep(1);
        }
        return true;
    }
    /// Lets events through for a while, in which nothing is to happen.
    static void pump(int milliseconds)
    {
        const QDeadlineTimer limit(milliseconds);
        waitUntil([&] { return limit.hasExpired(); });
    }
    QList<QByteArray> rangesAsked() const
    {
        QList<QByteArray> ranges;
        for (const ServerRequest &request : m_server.requests())
            ranges.append(request.header("Range"));
        return ranges;
    }

    QTemporaryDir m_root;
    QTemporaryDir m_folder;
    FirmwareServer m_server{m_root.path()};
};
