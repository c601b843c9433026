#pragma once

#include "harness/process/ChildProcess.h"

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <memory>
#include <vector>

/// The results of the clients.
struct ClientResults
{
    /// The number of clients that have downloaded an image with each MD5; it was the one in the manifest.
    QMap<QString, int> sums;
    /// The last log lines of each of the other clients.
    QStringList failures;
    /// The number of repeated requests of the clients that have downloaded an image.
    int retries = 0;
    /// Milliseconds that each of these took.
    QVector<double> tookMs;
};

/// Clients that download an image at the same time, at most 25 in each process. The destructor ends them.
class ManyClients
{
public:
    /// `program` is quillmarsh-fetch-clients.
    explicit ManyClients(const QString &program) : m_program(program) {}

    /// Starts the given number of clients. Returns false on failure; see errorText().
    bool start(int clients, const QString &manifestUrl, const QString &model, const QString &authority);
    /// Returns whether all clients have received bytes of an image.
    bool hasArrivedEverywhere() const;
    /// Returns whether all clients have ended.
    bool haveEnded();
    /// Waits until all clients have ended and returns their results. Those of a process that has not written
    /// any are missing.
    ClientResults results();
    QString errorText() const;

private:
    QString m_program;
    QTemporaryDir m_folder;
    /// One for each client.
    QStringList m_folders;
    std::vector<std::unique_ptr<ChildProcess>> m_processes;
};
