#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

/// The part of a login manager that provides locks against sleep and shutdown. A lock is held until nobody
/// has its descriptor open any more, which is detected at the other end of a pipe.
class FakeLoginManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit FakeLoginManager(const QDBusConnection &bus) : m_bus(bus) {}
    ~FakeLoginManager() override
    {
        for (const int end : m_ends)
            close(end);
    }
    Q_DISABLE_COPY(FakeLoginManager)

    bool start()
    {
        return m_bus.registerService(QStringLiteral("org.freedesktop.login1")) &&
               m_bus.registerObject(QStringLiteral("/org/freedesktop/login1"), this,
                                    QDBusConnection::ExportAllSlots);
    }

    /// Whether requests are refused, as if the user's session were not active.
    bool refuses = false;
    /// Whether requests are not answered before answer() is called.
    bool isSlow = false;

    /// Returns the requests so far: what, who, why and mode.
    QList<QStringList> questions() const { return m_questions; }
    /// Answers the pending requests.
    void answer()
    {
        for (const QDBusMessage &question : qAsConst(m_kept))
            m_bus.send(question.createReply(QVariant::fromValue(lend())));
        m_kept.clear();
    }
    /// Returns whether all clients have received the answer and left the bus. Until then a lock may still be
    /// in transit.
    bool isSettled() const
    {
        return std::none_of(m_askers.begin(), m_askers.end(), [this](const QString &asker) {
            return m_bus.interface()->isServiceRegistered(asker).value();
        });
    }
    /// Return how many locks were provided, and how many of them are held.
    int lent() const { return static_cast<int>(m_ends.size()); }
    int held() const
    {
        int count = 0;
        for (const int end : m_ends) {
            pollfd state{end, 0, 0};
            count += poll(&state, 1, 0) == 1 && (state.revents & POLLERR) != 0 ? 0 : 1;
        }
        return count;
    }

public Q_SLOTS:
    // NOLINTNEXTLINE(performance-unnecessary-value-param): a method that is called over the bus
    QDBusUnixFileDescriptor Inhibit(QString what, QString who, QString why, QString mode)
    {
        m_questions.append({what, who, why, mode});
        m_askers.append(message().service());
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("Permission denied"));
            return {};
        }
        if (isSlow) {
            setDelayedReply(true);
            m_kept.append(message());
            return {};
        }
        return lend();
    }

private:
    QDBusUnixFileDescriptor lend()
    {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0)
            return {};
        QDBusUnixFileDescriptor lent;
        lent.giveFileDescriptor(ends[0]);
        m_ends.push_back(ends[1]);
        return lent;
    }

    QDBusConnection m_bus;
    QList<QStringList> m_questions;
    /// The bus names of the clients.
    QStringList m_askers;
    QList<QDBusMessage> m_kept;
    /// The local ends of the pipes. An error occurs on each when its lock is released.
    std::vector<int> m_ends;
};
