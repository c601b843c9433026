#pragma once

#include "support/Reporter.h"

/// A reporter that nobody listens to.
class QuietReporter : public Reporter
{
public:
    void log(const QString &) override {}
    void setStateTitle(const BilingualText &) override {}
    void setProgress(int) override {}
    void enableStartButton(bool) override {}
    void runDeviceCheck(bool) override {}
};
