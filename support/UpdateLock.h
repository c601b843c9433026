#pragma once

#include <QString>

#include <memory>
#include <mutex>

class QLockFile;
class Reporter;

/// Which of the program's copies writes to a device: one at a time, since they share the temporary
/// folder, the manifest file and the name of the IAP programmer. A copy that has crashed holds nothing.
/// Where the file cannot be written nobody is kept out. Any thread.
class UpdateLock
{
public:
    /// Keeps other copies out as long as there is one of this copy's holds, or a copy of it.
    using Hold = std::shared_ptr<QLockFile>;

    explicit UpdateLock(const QString &file) : m_file(file) {}

    /// Empty when another copy has it, which is logged.
    Hold take(Reporter &reporter);
    /// Whether another copy has it now.
    bool isTakenElsewhere();

private:
    Hold tryTake();

    const QString m_file;
    std::mutex m_mutex;
    std::weak_ptr<QLockFile> m_held;
};
