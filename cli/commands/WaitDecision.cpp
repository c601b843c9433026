#include "cli/commands/WaitDecision.h"

#include <utility>

std::optional<WaitDecision::End> WaitDecision::afterLook(ConnectionState state,
                                                         const std::function<bool()> &mayOpen, bool isLate)
{
    const bool wasRefused = std::exchange(m_wasRefused, false);
    switch (state) {
    case ConnectionState::OneBootloader:
        return m_isModelNamed ? End::Found : End::ModelNeeded;
    case ConnectionState::SeveralBootloaders:
        return End::SeveralBootloaders;
    case ConnectionState::Device:
    case ConnectionState::IapDevice:
        if (mayOpen())
            return End::Found;
        if (wasRefused)
            return End::NoAccess;
        m_wasRefused = true;
        return std::nullopt;
    case ConnectionState::DeviceStartsItself:
    case ConnectionState::Nothing:
        break;
    }
    if (isLate)
        return End::TimedOut;
    return std::nullopt;
}
