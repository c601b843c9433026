#pragma once

#include "simulator/server/FirmwareServer.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A loopback server with a firmware manifest.
class ManifestServer
{
public:
    ManifestServer() { EXPECT_TRUE(server.listen()); }

    void write(const QString &name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void setManifest(const QByteArray &json) { write(QStringLiteral("manifest.json"), json); }
    void setFault(const QString &text)
    {
        QString error;
        EXPECT_TRUE(server.addFault(text, &error)) << error.toStdString();
    }
    QString manifestUrl() const { return server.url(QStringLiteral("/manifest.json")).toString(); }

    QTemporaryDir folder;
    FirmwareServer server{folder.path()};
};
