#include "update/md5Check.h"

#include "update/FirmwareManifest.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>

QString md5Check::fileMd5(const QString &filePath)
{
    constexpr qint64 blockBytes = 1048576;

    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(QCryptographicHash::Md5);
    QByteArray block(static_cast<int>(blockBytes), Qt::Uninitialized);
    while (!file.atEnd()) {
        const qint64 count = file.read(block.data(), blockBytes);
        if (count < 0)
            return {};
        hash.addData(block.constData(), static_cast<int>(count));
    }
    return QString::fromLatin1(hash.result().toHex());
}

bool md5Check::checkMd5(const QString &filePath, const QJsonObject &manifest, const QString &deviceKey)
{
    m_reporter.log(QStringLiteral("now check downloadfile md5.."));
    QString fileSum;
    QString serverSum;
    if (!filePath.isEmpty()) {
        fileSum = fileMd5(filePath);
        serverSum = FirmwareManifest::md5(manifest, deviceKey);
    }
    m_reporter.log(QLatin1String("DownloadFileMd5:") + fileSum);
    m_reporter.log(QLatin1String("ServerFileMd5:") + serverSum);
    m_reporter.log(QLatin1String("serverjson:") +
                   QString::fromUtf8(QJsonDocument(manifest).toJson(QJsonDocument::Indented)));

    if (fileSum.isEmpty() || serverSum.isEmpty()) {
        m_reporter.log(QStringLiteral("get file md5 failed.!"));
        return false;
    }
    const bool equal = fileSum == serverSum;
    m_reporter.log(equal ? QStringLiteral("File MD5 verified successfully.")
                         : QStringLiteral("File MD5 mismatch."));
    return equal;
}
