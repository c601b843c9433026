#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>

/// Returns UTF-8 literals as a list.
inline QStringList list(std::initializer_list<const char *> items)
{
    QStringList texts;
    for (const char *item : items)
        texts.append(QString::fromUtf8(item));
    return texts;
}
