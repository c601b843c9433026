#pragma once

#include "support/ShutdownFlag.h"
#include "tests/iap/FakeIapHost.h"
#include "tests/support/RecordedDebugStream.h"
#include "tests/support/ToldTools.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

/// The panel with programmers that do what they are told, and with a "taskkill" that does nothing.
class IAPUpDateTest : public testing::Test
{
protected:
    static constexpr int limitMs = 20000;

    void SetUp() override
    {
        m_path = qgetenv("PATH");
        m_currentFolder = QDir::currentPath();
        qputenv("PATH", m_tools.folder().toLocal8Bit() + QDir::listSeparator().toLatin1() + m_path);
        taskkill("");
        getData("");
        startBody("");
        // Windows looks there first, and in its own folder, which has a taskkill, before the path. Last,
        // since the tools are copied from a path of the drive that was the current one.
        QDir::setCurrent(m_tools.folder());
    }
    void TearDown() override
    {
        m_panel.reset();
        ShutdownFlag::instance().lower();
        // Windows does not remove a folder that is the current one.
        QDir::setCurrent(m_currentFolder);
        qputenv("PATH", m_path);
    }

    void taskkill(const QByteArray &steps) { m_tools.writeBareName(QStringLiteral("taskkill"), steps); }
    /// What the programmer does when it is asked what there is, and when it is to program.
    void getData(const QByteArray &steps)
    {
        m_getData = steps;
        writeProgrammer();
    }
    void startBody(const QByteArray &steps)
    {
        m_start = steps;
        writeProgrammer();
    }
    void removeProgrammer() const { QFile::remove(programmer()); }

    IAPUpDate &panel(QWidget *parent = nullptr)
    {
        if (!m_panel)
            m_panel = std::make_unique<IAPUpDate>(IAPUpDate::noDevice, IAPUpDate::noDevice, programmer(),
                                                  parent, &m_host, &m_logWindow);
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
        forgetRuns();
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
    QStringList runs() const { return runsOf(QStringLiteral("IAP_Programmer|")); }
    QStringList starts() const { return runs().filter(QStringLiteral("Start|")); }
    QStringList kills() const { return runsOf(QStringLiteral("taskkill|")); }
    void forgetRuns() const { QFile::remove(m_tools.file(QStringLiteral("runs"))); }

    ToldTools m_tools;
    FakeIapHost m_host;
    TextWindow m_logWindow;
    std::unique_ptr<IAPUpDate> m_panel;

private:
    QString programmer() const { return m_tools.program(QStringLiteral("IAP_Programmer")); }
    void writeProgrammer()
    {
        m_tools.write(QStringLiteral("IAP_Programmer"),
                      Told::whenAskedTo("GetData", m_getData) + Told::whenAskedTo("Start", m_start));
    }
    QStringList runsOf(const QString &beginning) const
    {
        QStringList arguments;
        for (const QString &run : m_tools.runs()) {
            if (run.startsWith(beginning))
                arguments.append(run.mid(beginning.size()));
        }
        return arguments;
    }

    QByteArray m_path;
    QString m_currentFolder;
    QByteArray m_getData;
    QByteArray m_start;
};
