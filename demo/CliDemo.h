#pragma once

#include "demo/DemoOptions.h"
#include "harness/session/BusSession.h"
#include "harness/session/FirmwareRoot.h"
#include "harness/session/ServerSession.h"
#include "harness/stage/StagedProgram.h"

/// A whole update by the program without a window, which writes to the standard output of this process.
class CliDemo
{
public:
    explicit CliDemo(const DemoOptions &options);

    /// Starts it all and waits for the program's end. Returns whether the device has received what it should.
    bool run();

private:
    bool open();
    bool runProgram();
    bool report();
    QStringList arguments() const;
    /// A line for the person: where events go to standard output, it goes to standard error.
    void say(const QString &line) const;

    const DemoOptions m_options;
    FirmwareRoot m_firmware;
    QByteArray m_rightImage;
    StagedProgram m_program;
    ServerSession m_server;
    BusSession m_bus;
};
