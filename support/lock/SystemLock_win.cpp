#include "support/lock/SystemLock.h"

#include <QFileInfo>

#include <utility>

#include <windows.h>

// sddl.h needs windows.h, so it comes last.
#include <sddl.h>

namespace {

struct HandleCloser
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

constexpr DWORD eventAccess = SYNCHRONIZE | EVENT_MODIFY_STATE;

/// Gives other users' programs access to an object. With the default rights they could not even open it.
class RightsForEveryone
{
public:
    RightsForEveryone()
    {
        // The two rights of eventAccess.
        ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;0x00100002;;;WD)", SDDL_REVISION_1,
                                                             &m_descriptor, nullptr);
        m_attributes = {sizeof(m_attributes), m_descriptor, FALSE};
    }
    ~RightsForEveryone() { LocalFree(m_descriptor); }
    Q_DISABLE_COPY(RightsForEveryone)

    SECURITY_ATTRIBUTES *attributes() { return &m_attributes; }

private:
    PSECURITY_DESCRIPTOR m_descriptor = nullptr;
    SECURITY_ATTRIBUTES m_attributes{};
};

Handle makeEvent(const QString &name, DWORD flags)
{
    RightsForEveryone rights;
    return Handle(CreateEventExW(rights.attributes(), reinterpret_cast<const wchar_t *>(name.utf16()), flags,
                                 eventAccess));
}

bool exists(const QString &name)
{
    return Handle(OpenEventW(SYNCHRONIZE, FALSE, reinterpret_cast<const wchar_t *>(name.utf16()))) != nullptr;
}

/// The names of a lock's kernel objects in one namespace.
struct Names
{
    /// An event that is signalled while nobody holds the lock. A successful wait for it resets it and takes
    /// the lock.
    QString gate;
    /// An event that exists while somebody holds the lock.
    QString mark;
};

Names namesIn(QLatin1String nameSpace, const QString &file)
{
    const QString gate = nameSpace + QFileInfo(file).fileName();
    return {gate, gate + QLatin1String(".taken")};
}

const QLatin1String machine("Global\\");
const QLatin1String session("Local\\");

class EventLock : public SystemLock
{
public:
    EventLock(Handle gate, Handle mark, bool forThisUserOnly)
        : m_gate(std::move(gate)),
          m_mark(std::move(mark)),
          m_forThisUserOnly(forThisUserOnly)
    {
    }
    ~EventLock() override
    {
        // The mark goes first, because the next holder creates it anew.
        m_mark.reset();
        SetEvent(m_gate.get());
    }
    Q_DISABLE_COPY(EventLock)

    bool isForThisUserOnly() const override { return m_forThisUserOnly; }

private:
    // The system deletes the gate with the last handle to it. If a process dies without signalling it, the
    // next process therefore creates a new one. Apart from the holder, a process opens it only for the moment
    // of an attempt.
    Handle m_gate;
    Handle m_mark;
    const bool m_forThisUserOnly;
};

} // namespace

SystemLockAttempt trySystemLock(const QString &file)
{
    for (const bool forThisUserOnly : {false, true}) {
        const Names names = namesIn(forThisUserOnly ? session : machine, file);
        Handle gate = makeEvent(names.gate, CREATE_EVENT_INITIAL_SET);
        if (!gate)
            continue;
        if (WaitForSingleObject(gate.get(), 0) != WAIT_OBJECT_0)
            return {nullptr, true};
        Handle mark = makeEvent(names.mark, CREATE_EVENT_MANUAL_RESET);
        return {std::make_unique<EventLock>(std::move(gate), std::move(mark), forThisUserOnly), false};
    }
    return {};
}

bool isSystemLockTaken(const QString &file)
{
    return exists(namesIn(machine, file).mark) || exists(namesIn(session, file).mark);
}
