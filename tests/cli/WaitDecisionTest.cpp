#include "cli/commands/WaitDecision.h"

#include <gtest/gtest.h>

namespace {

using End = WaitDecision::End;
using State = ConnectionState;

struct Look
{
    State state;
    bool mayOpen;
    bool isLate;
};

struct Wait
{
    const char *name;
    bool isModelNamed;
    std::vector<Look> looks;
    /// After the last look; after all others the wait goes on.
    std::optional<End> end;
};

void PrintTo(const Wait &wait, std::ostream *out)
{
    *out << wait.name;
}

class WaitDecisionTest : public testing::TestWithParam<Wait>
{
};

TEST_P(WaitDecisionTest, EndsAfterTheLastLook)
{
    WaitDecision decision(GetParam().isModelNamed);
    const std::vector<Look> &looks = GetParam().looks;
    for (std::size_t i = 0; i < looks.size(); ++i) {
        const Look &look = looks[i];
        const auto mayOpen = [&look] {
            return look.mayOpen;
        };
        const std::optional<End> end = decision.afterLook(look.state, mayOpen, look.isLate);
        EXPECT_EQ(end, i + 1 == looks.size() ? GetParam().end : std::nullopt) << "look " << i + 1;
    }
}

/// So many looks in a row that find a device that may not be opened, and then one more.
std::vector<Look> refused(int times, const Look &last)
{
    std::vector<Look> looks(static_cast<std::size_t>(times), Look{State::Device, false, false});
    looks.push_back(last);
    return looks;
}

const Wait waits[] = {
    {"ADeviceThatMayBeOpened", false, {{State::Device, true, false}}, End::Found},
    {"AnIapDeviceThatMayBeOpened", false, {{State::IapDevice, true, false}}, End::Found},
    {"ADeviceThatComesLater",
     false,
     {{State::Nothing, false, false}, {State::Device, true, false}},
     End::Found},
    {"NothingYet", false, {{State::Nothing, false, false}}, std::nullopt},
    {"NothingInTime", false, {{State::Nothing, false, false}, {State::Nothing, false, true}}, End::TimedOut},
    {"ADeviceOfALaunchModeInTime", false, {{State::DeviceStartsItself, true, true}}, End::TimedOut},
    {"RefusedForFiveSeconds", false, refused(9, {State::Device, false, false}), End::NoAccess},
    {"RefusedForLessThanFiveSeconds", false, refused(9, {State::Device, true, false}), End::Found},
    {"RefusedTwiceAndLate", false, refused(1, {State::Device, false, true}), End::NoAccess},
    {"RefusedOnce", false, {{State::Device, false, false}, {State::Device, true, false}}, End::Found},
    {"RefusedOnceAndLate", false, {{State::Device, false, true}, {State::Device, true, true}}, End::Found},
    {"RefusedAndThenDisconnected",
     false,
     {{State::Device, false, false}, {State::Nothing, false, true}},
     End::TimedOut},
    {"RefusedAgainAfterADisconnection",
     false,
     {{State::Device, false, false}, {State::Nothing, false, false}, {State::Device, false, true}},
     std::nullopt},
    {"ABootloaderOfANamedModel", true, {{State::OneBootloader, false, false}}, End::Found},
    {"ABootloaderOfAnUnknownModel", false, {{State::OneBootloader, false, false}}, End::ModelNeeded},
    {"SeveralBootloaders", true, {{State::SeveralBootloaders, false, false}}, End::SeveralBootloaders},
};

std::string nameOf(const testing::TestParamInfo<Wait> &info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, WaitDecisionTest, testing::ValuesIn(waits), nameOf);

} // namespace
