#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// How a failed expectation shows Qt's texts. Every test source is compiled with these: two that
// printed differently would break the one-definition rule.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}
