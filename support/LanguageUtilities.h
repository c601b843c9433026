#pragma once

#include "support/TranslatableText.h"

#include <QHash>
#include <QMap>
#include <QString>

/// The language tables compiled into the program, and the current language. Call setLanguage() on the GUI
/// thread before other threads look texts up; lookups may then be made from any thread.
class LanguageUtilities
{
public:
    /// Returns the shared instance. The first call loads the tables.
    static LanguageUtilities &instance();

    /// Loads every existing table "<folder>/<language code>.json". The program's own tables are in
    /// ":/JsonLanguage"; tests may use another folder.
    explicit LanguageUtilities(const QString &folder = QStringLiteral(":/JsonLanguage"));

    /// Makes `code` the current language. Does nothing if there is no table for it.
    void setLanguage(const QString &code);
    QString language() const { return m_current; }

    /// Returns the text of `key` in `language`, or in the current language if `language` is empty. Returns
    /// `fallback` if the table or the key is missing or the text is empty.
    QString lookup(const QString &key, const QString &fallback, const QString &language = QString()) const;
    QString lookup(const TranslatableText &text) const;

private:
    using Table = QHash<QString, QString>;

    void load(const QString &code, const QString &fileName);

    QMap<QString, Table> m_tables;
    QString m_current;
};
