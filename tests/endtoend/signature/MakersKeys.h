#pragma once

#include "harness/server/FirmwareRoot.h"
#include "simulator/files/WholeFile.h"

#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Signs images as a maker does, with the real minisign. The programs of these tests accept the keys "first"
/// and "second", but not "stranger".
namespace MakersKeys {

const QString comment = QStringLiteral("model:DevMaa version:1.4.2");

/// Returns the text of a signature of the file.
inline QByteArray sign(const QString &image, const char *key = "first",
                       const QString &trustedComment = comment, const QStringList &more = {})
{
    const QTemporaryDir folder;
    const QString signature = folder.filePath(QStringLiteral("signature"));
    QProcess minisign;
    minisign.setProcessChannelMode(QProcess::MergedChannels);
    minisign.start(QStringLiteral(MINISIGN),
                   QStringList{QStringLiteral("-S"), QStringLiteral("-s"),
                               QStringLiteral(MAKERS_KEYS "/") + QLatin1String(key) + QLatin1String(".key"),
                               QStringLiteral("-m"), image, QStringLiteral("-x"), signature,
                               QStringLiteral("-t"), trustedComment} +
                       more);
    EXPECT_TRUE(minisign.waitForFinished(-1));
    EXPECT_EQ(minisign.exitCode(), 0) << minisign.readAll().toStdString();
    return WholeFile::read(signature);
}

/// Signs the model's image on the server, in the manifest.
inline void publish(FirmwareRoot &firmware, const QString &model, const QByteArray &signature)
{
    firmware.setField(model, QStringLiteral("signature"), QString::fromUtf8(signature));
}

} // namespace MakersKeys
