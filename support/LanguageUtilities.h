#pragma once

#include "support/BilingualText.h"

#include <QHash>
#include <QMap>
#include <QString>

/// The language tables compiled into the program, and the current language. GUI thread for
/// setLanguage; lookups may come from any thread afterwards, since nothing changes any more.
class LanguageUtilities
{
public:
    /// The one shared instance; the tables are loaded when it is first asked for.
    static LanguageUtilities &instance();

    /// Loads every table "<folder>/<language code>.json" that is there. The program's own lie
    /// under ":/JsonLanguage"; a test may point elsewhere.
    explicit LanguageUtilities(const QString &folder = QStringLiteral(":/JsonLanguage"));

    /// Makes `code` the current language; a code without a table leaves it as it is.
    void setLanguage(const QString &code);
    QString language() const { return m_current; }

    /// The text of `key` in `language`, or in the current language when that is empty. A table or
    /// key that is missing, or a text that is empty, gives `fallback`.
    QString lookup(const QString &key, const QString &fallback, const QString &language = QString()) const;
    QString lookup(const BilingualText &text) const;

private:
    using Table = QHash<QString, QString>;

    void load(const QString &code, const QString &fileName);

    QMap<QString, Table> m_tables;
    QString m_current;
};
