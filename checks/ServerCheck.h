#pragma once

#include "checks/Finding.h"
#include "checks/ImageFindings.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/// Checks a firmware server. Each request takes at most WebRequest::limitMs.
namespace ServerCheck {

/// A manifest and the findings about it.
struct Manifest
{
    QVector<Finding> findings;
    /// Empty if the manifest did not arrive or is not a JSON object.
    QJsonObject root;
};

/// Fetches the manifest. The findings are "server" and, if it answered, "manifest".
Manifest fetchManifest(const QString &address);

/// Reads the manifest from a file.
Manifest readManifest(const QString &file);

/// Requests the image and a part of it, without reading it. WebRequest::isAddress() must hold for `address`.
ImageFindings::Image checkImage(const QString &what, const QString &address);

/// Checks whether a server answers at `address`.
Finding checkAddress(const QString &what, const QString &address);

} // namespace ServerCheck
