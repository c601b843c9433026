#pragma once

#include "tests/endtoend/EndToEnd.h"

/// Folders and files that cannot be written, or must not be.
class FolderFaultTest : public EndToEndTest
{
protected:
    // The table has no text of its own for it, so the fallback shows.
    const QString folderFailed = QStringLiteral("当前状态: ensurePath Failed");

    QString downloads()
    {
        return scenario().program.temporaryFolder() + QStringLiteral("/QuillmarshV3TmpPath");
    }
    /// As the program names it.
    QString toProgramPath(const QString &path) { return scenario().program.toProgramPath(path); }

    /// The title after a run that may be over before the start button is seen disabled.
    QString titleAfterQuickRun()
    {
        UpdateScenario &s = scenario();
        if (!s.start() || !s.pressStart())
            return s.errorText();
        s.probe.waitForText(EndToEnd::title, QStringLiteral("ensurePath"), EndToEnd::updateLimitMs);
        return titleWhenIdle();
    }
    bool logMentions(const QString &text)
    {
        return !scenario().program.updateLogLines().filter(text).isEmpty();
    }
    /// Whether a line that begins so goes on, with the system's own words.
    bool logGivesReasonAfter(const QString &beginning)
    {
        for (const QString &line : scenario().program.updateLogLines()) {
            if (line.startsWith(beginning) && line.size() > beginning.size())
                return true;
        }
        return false;
    }
};
