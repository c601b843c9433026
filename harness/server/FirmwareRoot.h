#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QTemporaryDir>

/// The folder that a firmware server serves: a manifest and images. The destructor removes it.
class FirmwareRoot
{
public:
    /// `server` is the scheme, host and port in the addresses of the manifest.
    explicit FirmwareRoot(const QString &server);

    /// Adds a model with an image of `size` pseudo-random bytes, which are always the same for the same seed.
    /// Returns the image.
    QByteArray addModel(const QString &model, int size, quint32 seed = 1);
    /// Replaces one field of the model's entry ("md5", "fileURL", "downloadURL").
    void setField(const QString &model, const QString &field, const QString &value);
    /// Replaces the whole manifest with these bytes.
    void setManifest(const QByteArray &contents);

    QString folder() const { return m_folder.path(); }
    QString manifestFile() const;
    QString imageFile(const QString &model) const;

private:
    void writeManifest();

    QTemporaryDir m_folder;
    QString m_server;
    QJsonObject m_models;
};
