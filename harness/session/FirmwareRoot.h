#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QTemporaryDir>

/// The folder that a firmware server serves: a manifest, and images beside it. It goes with the
/// object.
class FirmwareRoot
{
public:
    /// `server` is scheme, host and port, as the manifest is to name them.
    explicit FirmwareRoot(const QString &server);

    /// Adds a model with an image of `size` bytes that look random and are the same each time for
    /// the same seed. Returns the image.
    QByteArray addModel(const QString &model, int size, quint32 seed = 1);
    /// Replaces one field of the model's entry ("md5", "fileURL", "downloadURL").
    void setField(const QString &model, const QString &field, const QString &value);
    /// Replaces the whole manifest by these bytes.
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
