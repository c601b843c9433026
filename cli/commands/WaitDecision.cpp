#include "cli/commands/WaitDecision.h"

#include <utility>

std::optional<WaitDecision::End> WaitDecision::afterLook(ConnectionState state,
                                                         const std::function<bool()> &mayOpen, bool isLate)
{
    const int refusedLooks = std::exchange(m_refusedLooks, 0);
    switch (state) {
    case ConnectionState::OneBootloader:
        return m_isModelNamed ? End::Found : End::ModelNeeded;
    case ConnectionState::SeveralBootloaders:
        return End::SeveralBootloaders;
    case ConnectionState::Device:
    case ConnectionState::IapDevice:
        if (mayOpen())
            return End::Found;
        m_refusedLooks = refusedLooks + 1;
        if (m_refusedLooks >= (isLate ? leastRefusedLooks : mostRefusedLooks))
            return End::NoAccess;
        return std::nullopt;
    case ConnectionState::DeviceStartsItself:
    case ConnectionState::Nothing:
        break;
    }
    if (isLate)
        return End::TimedOut;
    return std::nullopt;
}
