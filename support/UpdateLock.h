#pragma once

#include <QString>

#include <memory>

class Reporter;

/// Lets one running copy of the program at a time write to a device: copies share the temporary folder, the
/// manifest file and the name of the IAP programmer. The lock of a copy that has crashed is free. On Windows
/// it holds for all users of the machine, as the command does that ends programmers by their name. If the
/// system cannot provide the lock, no copy is refused. May be used from any thread.
class UpdateLock
{
public:
    /// Keeps other copies of the program out. The lock is released with the last Hold of this copy, and may
    /// outlive the UpdateLock.
    using Hold = std::shared_ptr<void>;

    /// Copies with the same file exclude each other; see SystemLock.h.
    explicit UpdateLock(const QString &file);

    /// Takes the lock, or shares it when this copy has it already. Returns an empty Hold and logs a line
    /// when another copy of the program has it.
    Hold take(Reporter &reporter);
    /// Returns whether another copy of the program has the lock. Never takes it, so that nobody is refused
    /// because of a look.
    bool isTakenElsewhere() const;

private:
    struct Shared;
    class Share;
    struct Taken
    {
        Hold hold;
        /// Whether the user has yet to hear that other users are not kept out.
        bool reportScope = false;
    };

    Taken tryTake();

    const std::shared_ptr<Shared> m_shared;
};
