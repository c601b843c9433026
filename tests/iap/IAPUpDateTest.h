#pragma once

#include "support/process/ShutdownFlag.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/common/EventWait.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/iap/FakeIapHost.h"
#include "tests/iap/ScriptedProgrammer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <iostream>
#include <memory>

/// The panel with programmers that play scripts, and with a "taskkill" that does nothing.
class IAPUpDateTest : public testing::Test
{
protected:
    void SetUp() override { dependsOnRealTime("the second that a taskkill gets"); }
    void TearDown() override
    {
        if (HasFailure())
            std::cout << qPrintable(m_host.events().join(QLatin1Char('\n'))) << std::endl;
        m_panel.reset();
        ShutdownFlag::instance().lower();
    }

    void taskkill(const ToolSteps &steps) { m_programmer.taskkill(steps); }
    void getData(const ToolSteps &steps) { m_programmer.getData(steps); }
    void startBody(const ToolSteps &steps) { m_programmer.startBody(steps); }
    void removeProgrammer() const { m_programmer.removeProgrammer(); }

    IAPUpDate &panel(QWidget *parent = nullptr)
    {
        if (!m_panel)
            m_panel = std::make_unique<IAPUpDate>(IAPUpDate::noDevice, IAPUpDate::noDevice,
                                                  m_programmer.program(), parent, &m_host, &m_logWindow);
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

    /// Creates a panel and clears all recorded events.
    void makePanel()
    {
        panel();
        m_host.takeEvents();
        forgetRuns();
    }
    bool waitFor(const char *event)
    {
        return processEventsUntil([&] { return m_host.has(event); });
    }
    /// Clicks the button and waits for the end of the run.
    bool runToEnd()
    {
        download().click();
        return waitFor("ended");
    }
    /// Returns the arguments of the programmer's runs, joined with "|".
    QStringList runs() const { return m_programmer.runs(); }
    QStringList starts() const { return m_programmer.starts(); }
    QStringList kills() const { return m_programmer.kills(); }
    void forgetRuns() const { m_tools.forgetRuns(); }

    ScriptedProgrammer m_programmer;
    const ScriptedTools &m_tools = m_programmer.tools();
    FakeIapHost m_host;
    TextWindow m_logWindow;
    std::unique_ptr<IAPUpDate> m_panel;
};
