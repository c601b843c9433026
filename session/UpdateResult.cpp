#include "session/UpdateResult.h"

UpdateResult::Outcome outcomeOf(UpdateReason reason)
{
    switch (reason) {
    case UpdateReason::None:
        return UpdateResult::Outcome::Succeeded;
    case UpdateReason::NoModelChosen:
    case UpdateReason::ProgramClosed:
        return UpdateResult::Outcome::Cancelled;
    default:
        return UpdateResult::Outcome::Failed;
    }
}
