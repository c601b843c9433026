#include "support/power/WindowsPower.h"

#include <windows.h>

namespace {

HWND windowOf(quintptr id)
{
    return reinterpret_cast<HWND>(id);
}

/// The real functions of Windows.
class RealPower : public WindowsPower
{
public:
    void *request(const QString &reason, quint32 &error) override
    {
        QString text = reason;
        REASON_CONTEXT context = {};
        context.Version = POWER_REQUEST_CONTEXT_VERSION;
        context.Flags = POWER_REQUEST_CONTEXT_SIMPLE_STRING;
        context.Reason.SimpleReasonString = reinterpret_cast<wchar_t *>(text.data());
        // Not bound to a thread, unlike SetThreadExecutionState().
        const HANDLE request = PowerCreateRequest(&context);
        if (request == INVALID_HANDLE_VALUE || !request) {
            error = GetLastError();
            return nullptr;
        }
        if (!PowerSetRequest(request, PowerRequestSystemRequired)) {
            error = GetLastError();
            CloseHandle(request);
            return nullptr;
        }
        return request;
    }
    void release(void *request) override
    {
        PowerClearRequest(request, PowerRequestSystemRequired);
        CloseHandle(request);
    }
    void blockShutdown(quintptr window, const QString &reason) override
    {
        ShutdownBlockReasonCreate(windowOf(window), reinterpret_cast<const wchar_t *>(reason.utf16()));
    }
    void unblockShutdown(quintptr window) override { ShutdownBlockReasonDestroy(windowOf(window)); }
};

WindowsPower *&powerForTests()
{
    static WindowsPower *power = nullptr;
    return power;
}

} // namespace

WindowsPower &WindowsPower::instance()
{
    static RealPower real;
    return powerForTests() ? *powerForTests() : real;
}

void WindowsPower::setForTests(WindowsPower *power)
{
    powerForTests() = power;
}
