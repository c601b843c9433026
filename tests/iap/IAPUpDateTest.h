#pragma once

#include "support/ShutdownFlag.h"
#include "tests/iap/FakeIapHost.h"
#include "tests/support/RecordedDebugStream.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

/// The panel with programmers that are shell scripts, and with a "taskkill" that writes down its runs.
class IAPUpDateTest : public testing::Test
{
protected:
    static constexpr int limitMs = 20000;

    void SetUp() override
    {
        m_path = qgetenv("PATH");
        qputenv("PATH", m_folder.path().toLocal8Bit() + ':' + m_path);
        write(QStringLiteral("taskkill"), "printf '%s ' \"$@\" >> " + file("kills").toLocal8Bit());
        getData("");
        startBody("");
    }
    void TearDown() override
    {
        m_panel.reset();
        ShutdownFlag::instance().lower();
        qputenv("PATH", m_path);
    }

    QString file(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const QString &name, const QByteArray &body)
    {
        const QString path = m_folder.filePath(name);
        QFile script(path);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n" + body + '\n');
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// What the programmer does when it is asked what there is, and when it is to program. A body
    /// that goes on for long begins with "exec", since a shell's children outlive it.
    void getData(const QByteArray &body)
    {
        m_getData = body;
        writeProgrammer();
    }
    void startBody(const QByteArray &body)
    {
        m_start = body;
        writeProgrammer();
    }
    /// A body that waits until letGoOn().
    QByteArray pause() const
    {
        return "while [ ! -e " + file("go-on").toLocal8Bit() + " ]; do sleep 0.02; done;";
    }
    void letGoOn() const { QFile(file("go-on")).open(QIODevice::WriteOnly); }

    IAPUpDate &panel(QWidget *parent = nullptr)
    {
        if (!m_panel)
            m_panel = std::make_unique<IAPUpDate>(IAPUpDate::noDevice, IAPUpDate::noDevice,
                                                  file("IAP_Programmer.exe"), parent, &m_host, &m_logWindow);
        return *m_panel;
    }
    template <typename Widget>
    Widget &find(const char *name)
    {
        return *panel().findChild<Widget *>(QLatin1String(name));
    }
    QComboBox &portType() { return find<QComboBox>("iapPortType"); }
    QComboBox &portName() { return find<QComboBox>("iapPortName"); }
    QComboBox &baudRate() { return find<QComboBox>("iapBaudRate"); }
    QCheckBox &crc() { return find<QCheckBox>("iapCrcVerify"); }
    QPushButton &download() { return find<QPushButton>("iapDownload"); }
    static QStringList items(const QComboBox &box)
    {
        QStringList texts;
        for (int i = 0; i < box.count(); ++i)
            texts.append(box.itemText(i));
        return texts;
    }

    /// A panel that is set up, with all that happened so far forgotten.
    void makePanel()
    {
        panel();
        m_host.takeEvents();
        QFile::remove(file("runs"));
    }
    bool waitFor(const char *event)
    {
        return QTest::qWaitFor([&] { return m_host.has(event); }, limitMs);
    }
    /// One run from the click to its end.
    bool runToEnd()
    {
        download().click();
        return waitFor("ended");
    }
    /// The arguments of the programmer's runs, joined with "|".
    QStringList runs() const { return linesOf("runs"); }
    QStringList starts() const { return runs().filter(QStringLiteral("Start|")); }
    QStringList linesOf(const char *name) const
    {
        QFile record(file(name));
        if (!record.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(record.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QTemporaryDir m_folder;
    FakeIapHost m_host;
    TextWindow m_logWindow;
    std::unique_ptr<IAPUpDate> m_panel;

private:
    void writeProgrammer()
    {
        write(QStringLiteral("IAP_Programmer.exe"),
              "line=; for argument; do line=\"$line$argument|\"; done; echo \"$line\" >> " +
                  file("runs").toLocal8Bit() + "\ncase \"$1\" in\nGetData) " + m_getData + "\n;;\nStart) " +
                  m_start + "\n;;\nesac");
    }

    QByteArray m_path;
    QByteArray m_getData;
    QByteArray m_start;
};
