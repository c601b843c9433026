#pragma once

#include "demo/DemoOptions.h"
#include "harness/server/FirmwareRoot.h"
#include "harness/server/ServerSession.h"
#include "harness/session/BusSession.h"
#include "harness/stage/StagedProgram.h"

/// Shows a whole update by quillmarsh-cli, which writes to the standard output of this process.
class CliDemo
{
public:
    explicit CliDemo(const DemoOptions &options);

    /// Starts everything and waits until the program has ended. Returns whether the program succeeded and the
    /// device has received the right bytes.
    bool run();

private:
    bool open();
    bool runProgram();
    bool report();
    QStringList arguments() const;
    /// Prints a line for the user: to standard error if standard output is for events.
    void print(const QString &line) const;

    const DemoOptions m_options;
    FirmwareRoot m_firmware;
    QByteArray m_expectedImage;
    StagedProgram m_program;
    ServerSession m_server;
    BusSession m_bus;
};
