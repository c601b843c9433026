#pragma once

#include "demo/DemoOptions.h"
#include "harness/UpdateScenario.h"

/// The scenario of a demo: the device, the servers' firmware, and a flasher that takes its time, so
/// that there is something to see.
class DemoScenario : public UpdateScenario
{
public:
    explicit DemoScenario(const DemoOptions &options);

    /// Starts it all, with the local file chosen in the window; false tells why in failure().
    bool open();

    const DemoOptions &options() const { return m_options; }
    /// What the device is to receive.
    const QByteArray &rightImage() const { return m_rightImage; }
    /// The title of an update that went well, in the window's language.
    QString successTitle() const;

    /// Why the latest step failed.
    QString failure() const;

private:
    void showReport();

    const DemoOptions m_options;
    QByteArray m_rightImage;
};
