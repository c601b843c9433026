#pragma once

#include "support/log/Reporter.h"

/// A reporter that discards everything.
class QuietReporter : public Reporter
{
public:
    void log(const QString & /*line*/) override {}
    void setStateTitle(const TranslatableText & /*title*/) override {}
    void setProgress(int /*percent*/) override {}
    void enableStartButton(bool /*enable*/) override {}
    void runDeviceCheck(bool /*run*/) override {}
};
