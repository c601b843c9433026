#pragma once

#include "support/log/Reporter.h"

#include <QJsonObject>
#include <QString>

/// Compares the checksum of a downloaded file with the one in the manifest. Runs on the update's thread.
class md5Check
{
public:
    explicit md5Check(Reporter &reporter) : m_reporter(reporter) {}

    /// Returns whether the MD5 of the file is equal, as text, to the one in the manifest for `deviceKey`.
    bool checkMd5(const QString &filePath, const QJsonObject &manifest, const QString &deviceKey);

    /// Returns the MD5 of the file in lower-case hexadecimal, or an empty string if the file cannot be read.
    static QString fileMd5(const QString &filePath);

private:
    Reporter &m_reporter;
};
