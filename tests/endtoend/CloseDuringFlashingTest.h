#pragma once

#include "tests/endtoend/CloseTest.h"

inline const QJsonObject firstMarker =
    EndToEnd::step("print", QStringLiteral("Upgrade fwc: image.target.spl\n"));

/// Closing the window while a flasher runs or after one has run. The user is asked only while it writes.
class CloseDuringFlashingTest : public CloseTest
{
protected:
    void startWithScript(const QJsonDocument &flasherScript)
    {
        scenario().program.setScript(EndToEnd::usbFlasher, flasherScript);
        startAndPress();
    }

    void waitUntilItWrites()
    {
        ASSERT_TRUE(scenario().probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 16,
                                                  EndToEnd::updateLimitMs))
            << scenario().probe.errorText().toStdString();
    }

    int ended()
    {
        const QVector<StandinRun> runs = scenario().program.runs(EndToEnd::usbFlasher);
        return int(
            std::count_if(runs.begin(), runs.end(), [](const StandinRun &run) { return run.endMs >= 0; }));
    }
};
