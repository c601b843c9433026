#include "harness/stage/StageProcesses.h"

#include <QDir>

#include <windows.h>
// This header needs windows.h, so it comes after it.
#include <tlhelp32.h>

namespace {

bool runsFrom(const QString &folder, HANDLE process)
{
    wchar_t path[32768];
    DWORD length = sizeof path / sizeof *path;
    if (!QueryFullProcessImageNameW(process, 0, path, &length))
        return false;
    const QString executable =
        QDir::fromNativeSeparators(QString::fromWCharArray(path, static_cast<int>(length)));
    return executable.startsWith(QDir::fromNativeSeparators(folder) + QLatin1Char('/'), Qt::CaseInsensitive);
}

} // namespace

QVector<qint64> processesRunningFrom(const QString &folder)
{
    QVector<qint64> found;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return found;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID);
        if (!process)
            continue;
        if (runsFrom(folder, process))
            found.append(entry.th32ProcessID);
        CloseHandle(process);
    }
    CloseHandle(snapshot);
    return found;
}

void killProcessRunningFrom(const QString &folder, qint64 processId)
{
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE, FALSE,
                                       static_cast<DWORD>(processId));
    if (!process)
        return;
    // Checked with the same handle, so that no other process can be killed.
    if (runsFrom(folder, process))
        TerminateProcess(process, 1);
    CloseHandle(process);
}
