#pragma once

#include <QString>

#include <memory>

class Reporter;

/// A lock that lets only one running copy of the program write to a device: copies share the temporary
/// folder, the manifest file and the name of the IAP programmer. The lock of a crashed copy is free. On
/// Windows it is for all users of the machine, because the program kills IAP programmers by name. If the
/// system cannot provide the lock, every copy may update. May be used from any thread.
class UpdateLock
{
public:
    /// Keeps other copies of the program out. The lock is released with the last Hold of this copy. A Hold
    /// may outlive the UpdateLock.
    using Hold = std::shared_ptr<void>;

    /// Copies with the same file exclude each other; see SystemLock.h.
    explicit UpdateLock(const QString &file);

    /// Takes the lock, or shares it if this copy already has it. Returns an empty Hold and logs a line if
    /// another copy has it.
    Hold take(Reporter &reporter);
    /// Returns whether another copy of the program has the lock. Does not take it, so that asking never keeps
    /// another copy out.
    bool isTakenElsewhere() const;

private:
    struct Shared;
    class Share;
    struct Taken
    {
        Hold hold;
        /// Whether to tell the user that copies of other users are not kept out.
        bool reportScope = false;
    };

    Taken tryTake();

    const std::shared_ptr<Shared> m_shared;
};
