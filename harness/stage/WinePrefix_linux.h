#pragma once

#include <QProcessEnvironment>
#include <QTemporaryDir>

/// A Wine prefix: a separate registry and system drive. The destructor ends all processes in it.
///
/// Prefixes are copies of a template, which is created in the same folder when it is first needed and is not
/// used itself.
class WinePrefix
{
public:
    /// `folder` contains all prefixes; it is created if it does not exist.
    explicit WinePrefix(const QString &folder);
    ~WinePrefix();
    WinePrefix(const WinePrefix &) = delete;
    WinePrefix &operator=(const WinePrefix &) = delete;

    bool isValid() const { return m_error.isEmpty(); }
    QString errorText() const { return m_error; }

    /// Sets a text value in the current user's part of the registry, with a key such as "Software\\Wine".
    /// Call it before the first program starts.
    bool setUserValue(const QString &key, const QString &name, const QString &value);
    /// Sets the variables that make programs see a Windows in this locale, such as "zh_CN.UTF-8". The locale
    /// need not be installed, but the package "locales" must contain it.
    void setLocale(QProcessEnvironment &variables, const QString &locale) const;
    QString systemDrive() const { return m_folder.filePath(QStringLiteral("drive_c")); }
    /// Returns the environment variables with which a program runs in this prefix.
    QProcessEnvironment environment() const;

private:
    QString createTemplate(const QString &first) const;

    QTemporaryDir m_folder;
    QString m_error;
};
