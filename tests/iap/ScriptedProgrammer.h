#pragma once

#include "support/SystemTool.h"
#include "tests/support/ScriptedTools.h"

#include <QFile>

/// Programmers that play scripts, and a "taskkill" that does nothing, for as long as this object lives.
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
    /// What the programmer does when it is asked what there is, and when it is to program.
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
    /// The arguments of the programmer's runs, joined with "|".
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
