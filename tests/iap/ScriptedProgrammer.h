#pragma once

#include "support/process/SystemTool.h"
#include "tests/common/ScriptedTools.h"

#include <QFile>

/// Provides programmers that play scripts, and a "taskkill" that does nothing, during its lifetime.
class ScriptedProgrammer
{
public:
    ScriptedProgrammer()
    {
        SystemTool::setFolderForTests(m_tools.folder());
        taskkill({});
        getData({});
        startBody({});
    }
    ~ScriptedProgrammer() { SystemTool::setFolderForTests(QString()); }
    Q_DISABLE_COPY(ScriptedProgrammer)

    void taskkill(const ToolSteps &steps) { m_tools.writeBareName(QStringLiteral("taskkill"), steps); }
    /// Set the steps of the programmer when it is asked for its ports, and when it programs a device.
    void getData(const ToolSteps &steps)
    {
        m_getData = steps;
        writeProgrammer();
    }
    void startBody(const ToolSteps &steps)
    {
        m_start = steps;
        writeProgrammer();
    }
    void removeProgrammer() const { QFile::remove(program()); }

    const ScriptedTools &tools() const { return m_tools; }
    QString program() const { return m_tools.program(QStringLiteral("IAP_Programmer")); }
    /// Returns the arguments of the programmer's runs, joined with "|".
    QStringList runs() const { return runsOf(QStringLiteral("IAP_Programmer|")); }
    QStringList starts() const { return runs().filter(QStringLiteral("Start|")); }
    QStringList kills() const { return runsOf(QStringLiteral("taskkill|")); }

private:
    void writeProgrammer()
    {
        m_tools.writeScript(
            QStringLiteral("IAP_Programmer"),
            QJsonDocument(QJsonObject{{QStringLiteral("GetData"), StandinScript::runs({m_getData.toJson()})},
                                      {QStringLiteral("Start"), StandinScript::runs({m_start.toJson()})}}));
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

    ScriptedTools m_tools;
    ToolSteps m_getData;
    ToolSteps m_start;
};
