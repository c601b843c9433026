#pragma once

#include "demo/DemoOptions.h"
#include "harness/UpdateScenario.h"

/// The scenario of a demo: the device, the server's firmware, and a flasher that is slow enough to be
/// watched.
class DemoScenario : public UpdateScenario
{
public:
    explicit DemoScenario(const DemoOptions &options);

    /// Starts everything and chooses the local file in the window. If it returns false, failure() says why.
    bool open();

    const DemoOptions &options() const { return m_options; }
    /// The image that the device must receive.
    const QByteArray &expectedImage() const { return m_expectedImage; }
    /// Returns the title of a successful update in the window's language.
    QString successTitle() const;

    /// Returns why the last step failed.
    QString failure() const;

private:
    void showReport();

    const DemoOptions m_options;
    QByteArray m_expectedImage;
};
