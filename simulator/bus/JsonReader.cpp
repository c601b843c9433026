#include "simulator/bus/JsonReader.h"

#include <QJsonArray>

JsonReader::JsonReader(const QJsonObject &object, const QString &where, QString *error)
    : m_object(object),
      m_where(where),
      m_error(error)
{
}

void JsonReader::fail(const QString &what)
{
    if (m_error->isEmpty())
        *m_error = m_where + QStringLiteral(": ") + what;
}

bool JsonReader::has(const char *key) const
{
    return m_object.contains(QLatin1String(key));
}

bool JsonReader::isNull(const char *key)
{
    const QJsonValue value = take(key);
    return value.isUndefined() || value.isNull();
}

QJsonValue JsonReader::take(const char *key)
{
    m_known.insert(QString::fromLatin1(key));
    return m_object.value(QLatin1String(key));
}

QString JsonReader::text(const char *key, const QString &fallback)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return fallback;
    if (!value.isString())
        fail(QStringLiteral("\"%1\" must be a text").arg(QLatin1String(key)));
    return value.toString(fallback);
}

bool JsonReader::flag(const char *key, bool fallback)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return fallback;
    if (!value.isBool())
        fail(QStringLiteral("\"%1\" must be true or false").arg(QLatin1String(key)));
    return value.toBool(fallback);
}

int JsonReader::number(const char *key, int fallback, int least, int most)
{
    const QJsonValue value = take(key);
    if (value.isUndefined())
        return fallback;
    bool isNumber = value.isDouble();
    double number = value.toDouble();
    if (value.isString())
        number = value.toString().toInt(&isNumber, 0);
    if (!isNumber || number < least || number > most || number != static_cast<int>(number)) {
        fail(QStringLiteral("\"%1\" must be a number from %2 to %3")
                 .arg(QLatin1String(key))
                 .arg(least)
                 .arg(most));
        return fallback;
    }
    return static_cast<int>(number);
}

QByteArray JsonReader::bytesOf(const QJsonValue &value, const char *key, int most)
{
    const QString digits = value.toString();
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    // The conversion leaves out what is no digit.
    if (!value.isString() || QString::fromLatin1(bytes.toHex()).compare(digits, Qt::CaseInsensitive) != 0) {
        fail(QStringLiteral("\"%1\" must be hexadecimal digits, two for each byte").arg(QLatin1String(key)));
        return {};
    }
    if (bytes.size() > most) {
        fail(QStringLiteral("\"%1\" may have at most %2 bytes").arg(QLatin1String(key)).arg(most));
        return {};
    }
    return bytes;
}

QByteArray JsonReader::bytes(const char *key, int most)
{
    const QJsonValue value = take(key);
    return value.isUndefined() || value.isNull() ? QByteArray() : bytesOf(value, key, most);
}

QVector<QByteArray> JsonReader::byteTexts(const char *key, int most, int count)
{
    const QJsonArray list = take(key).toArray();
    QVector<QByteArray> all;
    if (list.size() > count)
        fail(QStringLiteral("\"%1\" may have at most %2 entries").arg(QLatin1String(key)).arg(count));
    for (int i = 0; i < list.size() && i < count; ++i)
        all.append(bytesOf(list.at(i), key, most));
    return all;
}

JsonReader JsonReader::object(const char *key)
{
    const QJsonValue value = take(key);
    if (!value.isUndefined() && !value.isObject())
        fail(QStringLiteral("\"%1\" must be an object").arg(QLatin1String(key)));
    return {value.toObject(), m_where + QLatin1Char('.') + QLatin1String(key), m_error};
}

QVector<JsonReader> JsonReader::objects(const char *key)
{
    const QJsonValue value = take(key);
    QVector<JsonReader> readers;
    if (!value.isArray()) {
        fail(QStringLiteral("\"%1\" must be a list").arg(QLatin1String(key)));
        return readers;
    }
    const QJsonArray list = value.toArray();
    for (int i = 0; i < list.size(); ++i) {
        if (!list.at(i).isObject())
            fail(QStringLiteral("\"%1\" must hold objects").arg(QLatin1String(key)));
        const QString where = QStringLiteral("%1.%2[%3]").arg(m_where, QLatin1String(key)).arg(i);
        readers.append(JsonReader(list.at(i).toObject(), where, m_error));
    }
    return readers;
}

void JsonReader::rejectUnknownKeys()
{
    const QStringList keys = m_object.keys();
    for (const QString &key : keys) {
        if (!m_known.contains(key))
            fail(QStringLiteral("unknown key \"%1\"").arg(key));
    }
}
