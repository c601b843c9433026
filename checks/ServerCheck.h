#pragma once

#include "checks/Finding.h"
#include "checks/ImageFindings.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/// Asks a firmware server. Each request takes at most WebLook::limitMs.
namespace ServerCheck {

/// A manifest and what is to be said about it.
struct Manifest
{
    QVector<Finding> findings;
    /// Empty if the manifest did not arrive or is no JSON object.
    QJsonObject root;
};

/// Fetches the manifest. The findings are "server" and, if it answered, "manifest".
Manifest fetchManifest(const QString &address);

/// Decides on the manifest in a file of this machine.
Manifest readManifest(const QString &file);

/// Asks for the image and for a part of it. `address` must be one as WebLook::isAddress() takes.
ImageFindings::Image lookAtImage(const QString &what, const QString &address);

/// Decides whether something answers at `address`.
Finding answers(const QString &what, const QString &address);

} // namespace ServerCheck
