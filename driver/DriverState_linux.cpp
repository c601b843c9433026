#include "driver/DriverState.h"

std::optional<DriverState> DriverState::ofThisSystem()
{
    return std::nullopt;
}
