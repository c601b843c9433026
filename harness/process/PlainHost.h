#pragma once

#include "harness/process/BoundProcess.h"
#include "harness/process/ProgramHost.h"

#include <memory>

/// Runs the program without a simulated bus. The destructor kills it.
class PlainHost : public ProgramHost
{
public:
    PlainHost();
    ~PlainHost() override;

    bool run(const Launch &launch) override;
    State programState() override;
    void killProgram() override;
    QString errorText() const override { return m_error; }
    qint64 processId() const { return m_process ? m_process->leaderId() : 0; }

private:
    std::unique_ptr<BoundProcess> m_process;
    QString m_error;
};
