#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QSet>
#include <QString>
#include <QVector>

#include <initializer_list>
#include <utility>

/// Reads a JSON object key by key and stores the first error in `*error` (not owned, must outlive the
/// reader). Missing and invalid values result in the fallback.
class JsonReader
{
public:
    JsonReader(const QJsonObject &object, const QString &where, QString *error);

    bool has(const char *key) const;
    /// Whether the key is absent or its value is null; counts as asking for it.
    bool isNull(const char *key);
    QString text(const char *key, const QString &fallback);
    bool flag(const char *key, bool fallback);
    /// Reads a JSON number or a string such as "0x33C3".
    int number(const char *key, int fallback, int least, int most);
    /// A text of hexadecimal digits; empty when absent or null. `most` is in bytes.
    QByteArray bytes(const char *key, int most);
    /// A list of such texts, at most `count`.
    QVector<QByteArray> byteTexts(const char *key, int most, int count);
    template <typename Value>
    Value choice(const char *key, Value fallback,
                 std::initializer_list<std::pair<const char *, Value>> choices)
    {
        const QString given = text(key, QString());
        for (const auto &[name, value] : choices) {
            if (given == QLatin1String(name))
                return value;
        }
        if (has(key))
            fail(QStringLiteral("\"%1\" cannot be \"%2\"").arg(QLatin1String(key), given));
        return fallback;
    }
    /// Reads an object; it is empty if the key is missing.
    JsonReader object(const char *key);
    QVector<JsonReader> objects(const char *key);

    /// Reports an error if there are keys that have not been read. Call it last.
    void rejectUnknownKeys();
    void fail(const QString &what);

private:
    QJsonValue take(const char *key);
    QByteArray bytesOf(const QJsonValue &value, const char *key, int most);

    QJsonObject m_object;
    QString m_where;
    QString *m_error;
    QSet<QString> m_known;
};
