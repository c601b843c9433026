#include "harness/process/BoundProcess.h"

#include <QVector>

#include <windows.h>
// This header needs windows.h, so it comes after it.
#include <tlhelp32.h>

namespace {

/// Puts this process into a job whose processes are all killed when this process ends. Child processes belong
/// to the job from their first instruction on.
bool joinJob()
{
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    // Intentional: the handle stays open until the system closes it at the end of the process.
    return job && SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits) &&
           AssignProcessToJobObject(job, GetCurrentProcess());
}

/// Returns the process, followed by its children and their children.
QVector<DWORD> processTreeOf(DWORD leader)
{
    QVector<DWORD> family{leader};
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return family;
    for (int next = 0; next < family.size(); ++next) {
        PROCESSENTRY32W entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
            if (entry.th32ParentProcessID == family.at(next) && !family.contains(entry.th32ProcessID))
                family.append(entry.th32ProcessID);
        }
    }
    CloseHandle(snapshot);
    return family;
}

} // namespace

BoundProcess::BoundProcess()
{
    static const bool joined = joinJob();
    if (!joined)
        qWarning("No job for child processes: they may outlive this one.");
}

// Never called, because Windows has no fork and exec.
void BoundProcess::setupChildProcess() {}

void BoundProcess::killAll()
{
    if (m_leaderId <= 0)
        return;
    const QVector<DWORD> family = processTreeOf(static_cast<DWORD>(m_leaderId));
    for (const DWORD member : family) {
        if (const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, member)) {
            TerminateProcess(process, 1);
            CloseHandle(process);
        }
    }
}
