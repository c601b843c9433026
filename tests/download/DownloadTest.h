#pragma once

#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareServer.h"
#include "tests/common/EventWait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QNetworkProxyFactory>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Returns bytes in which no two parts are equal.
inline QByteArray someBytes(int size)
{
    QRandomGenerator generator(quint32(size) + 1);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

/// Returns "signal name(types)" or "slot name(types)" for each entry that the class itself declares, in
/// order.
inline std::vector<std::string> entriesOf(const QMetaObject &type)
{
    std::vector<std::string> entries;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const bool isSlot = method.methodType() == QMetaMethod::Slot;
        entries.push_back((isSignal ? "signal "
                           : isSlot ? "slot "
                                    : "other ") +
                          method.methodSignature().toStdString());
    }
    return entries;
}

/// A test with a firmware server that serves one folder, and a folder to download to.
class DownloadTest : public testing::Test
{
protected:
    DownloadTest()
    {
        QNetworkProxyFactory::setUseSystemConfiguration(false);
        EXPECT_TRUE(m_server.listen());
    }

    FirmwareServer &server() { return m_server; }
    void fault(const char *text)
    {
        QString error;
        EXPECT_TRUE(m_server.addFault(QString::fromUtf8(text), &error)) << qPrintable(error);
    }
    /// Puts a file on the server; `path` begins with a slash.
    QUrl serve(const QString &path, const QByteArray &content)
    {
        write(m_served.path() + path, content);
        return m_server.url(path);
    }
    /// Returns the path of a file in the download folder.
    QString local(const char *name) const { return m_local.filePath(QString::fromUtf8(name)); }

    static void write(const QString &path, const QByteArray &content)
    {
        ASSERT_TRUE(WholeFile::write(path, content));
    }
    static QByteArray read(const QString &path) { return WholeFile::read(path); }
    QList<QByteArray> rangesAsked() const
    {
        QList<QByteArray> ranges;
        const QList<ServerRequest> requests = m_server.requests();
        for (const ServerRequest &request : requests)
            ranges.append(request.header("Range"));
        return ranges;
    }
    QList<QByteArray> pathsAsked() const
    {
        QList<QByteArray> paths;
        const QList<ServerRequest> requests = m_server.requests();
        for (const ServerRequest &request : requests)
            paths.append(request.path);
        return paths;
    }

    /// Processes events for a while, to show that something does not happen.
    static void pumpFor(int milliseconds)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }

private:
    QTemporaryDir m_served;
    QTemporaryDir m_local;
    FirmwareServer m_server{m_served.path()};
};
