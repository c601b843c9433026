#pragma once

#include "support/Reporter.h"

#include <QJsonObject>
#include <QString>

/// Compares a downloaded file with the sum that the manifest gives for it. Runs on the update's thread.
class md5Check
{
public:
    explicit md5Check(Reporter &reporter) : m_reporter(reporter) {}

    /// Whether the file's sum equals the manifest's for `deviceKey`, as exact text.
    bool checkMd5(const QString &filePath, const QJsonObject &manifest, const QString &deviceKey);

    /// The file's MD5 in lower-case hexadecimal; empty when it cannot be read.
    static QString fileMd5(const QString &filePath);

private:
    Reporter &m_reporter;
};
