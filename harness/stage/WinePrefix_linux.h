#pragma once

#include <QProcessEnvironment>
#include <QTemporaryDir>

/// A Windows of one's own under Wine: a registry and a system drive that no other has. The destructor
/// ends whatever runs in it.
///
/// All are copies of one that is made at the first need, below the same folder, and never used itself.
class WinePrefix
{
public:
    /// `folder` holds them all; made where it is missing.
    explicit WinePrefix(const QString &folder);
    ~WinePrefix();
    WinePrefix(const WinePrefix &) = delete;
    WinePrefix &operator=(const WinePrefix &) = delete;

    bool isValid() const { return m_error.isEmpty(); }
    QString errorText() const { return m_error; }

    /// A text value of the current user's part of the registry; only before the first program starts.
    /// The key as in "Software\\Wine".
    bool setUserValue(const QString &key, const QString &name, const QString &value);
    /// Makes those programs that get these variables, too, ones of a Windows in this locale, such as
    /// "zh_CN.UTF-8". It need not be installed, but has to be known to the package "locales".
    void setLocale(QProcessEnvironment &variables, const QString &locale) const;
    QString systemDrive() const { return m_folder.filePath(QStringLiteral("drive_c")); }
    /// The variables that make a program one of this Windows.
    QProcessEnvironment environment() const;

private:
    QString makeFirst(const QString &first) const;

    QTemporaryDir m_folder;
    QString m_error;
};
