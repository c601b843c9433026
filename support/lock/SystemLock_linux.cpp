#include "support/lock/SystemLock.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// An open file; -1 if it could not be opened.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (isOpen())
            ::close(m_number);
    }
    Q_DISABLE_COPY(Descriptor)

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    const int m_number;
};

// Other users may write to the folder: do not follow a link to a file of this user, and do not block on a
// pipe.
constexpr int openFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

struct flock wholeFile(short type)
{
    struct flock range = {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    return range;
}

/// A lock that belongs to the open file. A lock that belongs to the process would not exclude its other
/// threads.
class FileLock : public SystemLock
{
public:
    explicit FileLock(const QString &file)
        : m_file(::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | openFlags, 0600))
    {
    }
    ~FileLock() override
    {
        // Closing is not enough: a child process that was just forked still has the file open until exec().
        if (m_file.isOpen())
            set(F_UNLCK);
    }
    Q_DISABLE_COPY(FileLock)

    bool isOpen() const { return m_file.isOpen(); }
    bool tryTake() { return set(F_WRLCK); }

private:
    bool set(short type)
    {
        struct flock range = wholeFile(type);
        return ::fcntl(m_file.number(), F_OFD_SETLK, &range) == 0;
    }

    const Descriptor m_file;
};

} // namespace

SystemLockAttempt trySystemLock(const QString &file)
{
    auto lock = std::make_unique<FileLock>(file);
    if (!lock->isOpen())
        return {};
    if (lock->tryTake())
        return {std::move(lock), false};
    // Other errors mean that the file system does not support locks.
    return {nullptr, errno == EAGAIN || errno == EACCES};
}

bool isSystemLockTaken(const QString &file)
{
    const Descriptor opened(::open(QFile::encodeName(file).constData(), O_RDONLY | openFlags));
    struct flock range = wholeFile(F_WRLCK);
    return opened.isOpen() && ::fcntl(opened.number(), F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}
