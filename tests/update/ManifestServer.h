#pragma once

#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A loopback server with a firmware manifest.
class ManifestServer
{
public:
    ManifestServer() { EXPECT_TRUE(server.listen()); }

    void write(const QString &name, const QByteArray &content)
    {
        EXPECT_TRUE(WholeFile::write(folder.filePath(name), content));
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
