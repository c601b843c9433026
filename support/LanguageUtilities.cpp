#include "support/LanguageUtilities.h"

#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

LanguageUtilities &LanguageUtilities::instance()
{
    static LanguageUtilities shared;
    return shared;
}

LanguageUtilities::LanguageUtilities(const QString &folder)
{
    static const char *const codes[] = {"ar", "de", "en", "es", "fr",    "it",   "ja",
                                        "ko", "pl", "pt", "ru", "zh_CN", "zh_HK"};
    for (const char *code : codes) {
        const QString name = QLatin1String(code);
        load(name, folder + QLatin1Char('/') + name + QLatin1String(".json"));
    }
}

void LanguageUtilities::load(const QString &code, const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        qDebug().noquote()
            << QStringLiteral("Unable to open file %1, error info: %2").arg(fileName, file.errorString());
        return;
    }
    const QJsonObject texts = QJsonDocument::fromJson(file.readAll()).object();
    Table table;
    for (auto text = texts.begin(); text != texts.end(); ++text)
        table.insert(text.key(), text.value().toString());
    m_tables.insert(code, table);
}

void LanguageUtilities::setLanguage(const QString &code)
{
    if (m_tables.contains(code))
        m_current = code;
}

QString LanguageUtilities::lookup(const QString &key, const QString &fallback, const QString &language) const
{
    const QString text = m_tables.value(language.isEmpty() ? m_current : language).value(key);
    return text.isEmpty() ? fallback : text;
}

QString LanguageUtilities::lookup(const TranslatableText &text) const
{
    return lookup(QString::fromUtf8(text.key), QString::fromUtf8(text.fallback));
}
