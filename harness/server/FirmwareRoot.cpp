#include "harness/server/FirmwareRoot.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QSaveFile>

#include <random>

namespace {

const QLatin1String firmwarePath("/Tessilonix/firmware/");

QByteArray pseudoRandom(int size, quint32 seed)
{
    // The C++ standard defines the numbers of this engine, but not those of a distribution.
    std::mt19937 engine(seed);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(engine() & 0xFFU);
    return bytes;
}

void write(const QString &path, const QByteArray &contents)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() || !file.commit())
        qFatal("cannot write %s", qUtf8Printable(path));
}

} // namespace

FirmwareRoot::FirmwareRoot(const QString &server) : m_server(server)
{
    QDir(m_folder.path()).mkpath(QLatin1Char('.') + firmwarePath);
    writeManifest();
}

QByteArray FirmwareRoot::addModel(const QString &model, int size, quint32 seed)
{
    const QByteArray image = pseudoRandom(size, seed);
    write(imageFile(model), image);
    const QString url = m_server + firmwarePath + model + QLatin1String(".img");
    const QByteArray md5 = QCryptographicHash::hash(image, QCryptographicHash::Md5).toHex();
    m_models.insert(model, QJsonObject{{QLatin1String("fileURL"), url},
                                       {QLatin1String("md5"), QString::fromLatin1(md5)},
                                       {QLatin1String("downloadURL"), url}});
    writeManifest();
    return image;
}

void FirmwareRoot::setField(const QString &model, const QString &field, const QString &value)
{
    QJsonObject entry = m_models.value(model).toObject();
    entry.insert(field, value);
    m_models.insert(model, entry);
    writeManifest();
}

void FirmwareRoot::setManifest(const QByteArray &contents)
{
    write(manifestFile(), contents);
}

QString FirmwareRoot::manifestFile() const
{
    return m_folder.path() + firmwarePath + QLatin1String("firmware-version-check-test.json");
}

QString FirmwareRoot::imageFile(const QString &model) const
{
    return m_folder.path() + firmwarePath + model + QLatin1String(".img");
}

void FirmwareRoot::writeManifest()
{
    write(manifestFile(), QJsonDocument(QJsonObject{{QLatin1String("CurrentVersion"), m_models}}).toJson());
}
