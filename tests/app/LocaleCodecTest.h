#pragma once

#include "app/LocaleCodec.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

/// What the program does with the system once the locale's codec is the one that it has in the program.
class LocaleCodecTest : public testing::Test
{
protected:
    LocaleCodecTest()
    {
        setLocaleCodec();
        QDir().mkpath(folder());
    }
    ~LocaleCodecTest() override { QTextCodec::setCodecForLocale(m_before); }

    QString folder() const { return m_parent.filePath(QStringLiteral("固件 升级")); }
    QString file(const QString &name) const { return folder() + QLatin1Char('/') + name; }

private:
    QTextCodec *m_before = QTextCodec::codecForLocale();
    QTemporaryDir m_parent;
};
