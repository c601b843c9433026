#pragma once

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OwnMounts.h"

/// Folders and files that cannot or must not be written.
class FolderFaultTest : public EndToEndTest
{
protected:
    // The table has no text for this key, so the fallback is shown.
    const QString folderFailed = QStringLiteral("当前状态: ensurePath Failed");

    QString downloads()
    {
        return scenario().program.temporaryFolder() + QStringLiteral("/QuillmarshV3TmpPath");
    }
    /// Makes a folder of the stage read-only.
    bool makeReadOnly(const QString &folder)
    {
        releaseWithStage(folder);
        return OwnMounts::readOnly(folder);
    }
    /// Puts an empty disk of this size in the place of a folder of the stage.
    bool limitDisk(const QString &folder, int kibibytes)
    {
        releaseWithStage(folder);
        return OwnMounts::inMemory(folder, kibibytes);
    }
    /// Maps a path to the one that the program sees.
    QString toProgramPath(const QString &path) { return scenario().program.toProgramPath(path); }

    /// Returns the title after a run that may end before the start button is seen disabled.
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
    /// Returns whether there is a line that begins with this text and continues with an error text of the
    /// system.
    bool logGivesReasonAfter(const QString &beginning)
    {
        for (const QString &line : scenario().program.updateLogLines()) {
            if (line.startsWith(beginning) && line.size() > beginning.size())
                return true;
        }
        return false;
    }

private:
    /// A folder on which something is mounted cannot be removed.
    void releaseWithStage(const QString &folder)
    {
        scenario().program.beforeRemoval([folder] { OwnMounts::release(folder); });
    }
};
