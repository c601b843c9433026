#pragma once

#include "harness/process/ChildProcess.h"

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// How the clients ended.
struct ClientResults
{
    /// How many ended with an image of this MD5 sum, which was the manifest's.
    QMap<QString, int> sums;
    /// The last log lines of each of the others.
    QStringList failures;
    /// Repeated requests of the clients that ended with an image.
    int retries = 0;
};

/// Clients that fetch an image at the same time, in processes of at most 25. The destructor ends them.
class ManyClients
{
public:
    /// Starts so many clients. Returns false if that fails: see errorText().
    bool start(int clients, const QString &manifestUrl, const QString &model, const QString &authority);
    /// Returns whether bytes of an image have arrived at each client.
    bool hasArrivedEverywhere() const;
    /// Returns whether all clients have ended.
    bool haveEnded();
    /// Waits until all have ended, and returns their results; those of a process that did not write any are
    /// missing.
    ClientResults results();
    QString errorText() const;

private:
    QTemporaryDir m_folder;
    /// One for each client.
    QStringList m_folders;
    std::vector<std::unique_ptr<ChildProcess>> m_processes;
};
