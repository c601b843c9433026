#pragma once

#include "simulator/bench/ProgramHost.h"

#include <QProcess>

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
    qint64 processId() const;

private:
    std::unique_ptr<QProcess> m_process;
    qint64 m_processId = 0;
    QString m_error;
};
