#pragma once

#include "app/LocaleCodec.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTextCodec>

#include <gtest/gtest.h>

/// Sets the locale's codec as the program does, for tests of file names, tools, messages and the environment.
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
