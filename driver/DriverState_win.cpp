#include "driver/DriverState.h"
#include "driver/WindowsDriverSystem.h"

std::optional<DriverState> DriverState::ofThisSystem()
{
    WindowsDriverSystem system;
    return of(system);
}
