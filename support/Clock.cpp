#include "support/Clock.h"

#include "support/process/ShutdownFlag.h"

#include <QDeadlineTimer>

namespace {

class RealClock : public Clock
{
public:
    qint64 nowMs() const override { return QDeadlineTimer::current(Qt::PreciseTimer).deadline(); }
    bool sleepMs(int milliseconds) override
    {
        return ShutdownFlag::instance().sleepUnlessRaised(milliseconds);
    }
    bool isShuttingDown() const override { return ShutdownFlag::instance().isRaised(); }
};

} // namespace

Clock &Clock::real()
{
    static RealClock clock;
    return clock;
}
