#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// Printers for Qt types in failed expectations. All test sources are compiled with them, because different
// printers would violate the one-definition rule.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}
