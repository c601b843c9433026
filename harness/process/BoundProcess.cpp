#include "harness/process/BoundProcess.h"

#include "harness/process/Polling.h"

bool BoundProcess::startAndWait(const QString &program, const QStringList &arguments, int limitMs)
{
    m_leaderId = 0;
    start(program, arguments);
    if (!waitForStart(*this, limitMs))
        return false;
    m_leaderId = processId();
    return true;
}

bool BoundProcess::isRunning()
{
    if (state() != NotRunning)
        waitForFinished(0);
    return state() != NotRunning;
}
