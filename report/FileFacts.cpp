#include "report/FileFacts.h"

#include "support/process/ShutdownFlag.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 pieceBytes = Q_INT64_C(1024) * 1024;
constexpr int maximumEntries = 100;

QJsonValue sha256Of(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > FileFacts::maximumHashedBytes)
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    while (!file.atEnd()) {
        if (ShutdownFlag::instance().isRaised())
            return {};
        const QByteArray piece = file.read(pieceBytes);
        if (piece.isEmpty())
            return {};
        hash.addData(piece);
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace

QJsonObject FileFacts::of(const QString &path)
{
    // Opening a named pipe would block.
    const QFileInfo file(path);
    const bool exists = file.isFile();
    return {{QStringLiteral("path"), path},
            {QStringLiteral("size"), exists ? QJsonValue(file.size()) : QJsonValue()},
            {QStringLiteral("sha256"), exists ? sha256Of(path) : QJsonValue()}};
}

QJsonArray FileFacts::contentsOf(const QString &folder)
{
    QJsonArray entries;
    const QDir root(folder);
    // Links are listed but not followed.
    QDirIterator all(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext() && entries.size() < maximumEntries) {
        const QFileInfo entry(all.next());
        entries.append(
            QJsonObject{{QStringLiteral("name"), root.relativeFilePath(entry.filePath())},
                        {QStringLiteral("size"), entry.isFile() ? QJsonValue(entry.size()) : QJsonValue()}});
    }
    return entries;
}
