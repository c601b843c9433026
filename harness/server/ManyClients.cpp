#include "harness/server/ManyClients.h"

#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr int clientsPerProcess = 25;
/// A limit for 200 clients on a busy machine. Clients that give up take half a minute.
constexpr int limitMs = 10 * 60 * 1000;

} // namespace

bool ManyClients::start(int clients, const QString &manifestUrl, const QString &model,
                        const QString &authority)
{
    for (int left = clients; left > 0; left -= clientsPerProcess) {
        const QString name = QString::number(m_processes.size());
        const QString folder = m_folder.filePath(name);
        QDir().mkpath(folder);
        const int count = std::min(left, clientsPerProcess);
        for (int i = 0; i < count; ++i)
            m_folders.append(folder + QLatin1Char('/') + QString::number(i));
        m_processes.push_back(std::make_unique<ChildProcess>());
        if (!m_processes.back()->start({m_program, QStringLiteral("--manifest"), manifestUrl,
                                        QStringLiteral("--model"), model, QStringLiteral("--count"),
                                        QString::number(count), QStringLiteral("--authority"), authority,
                                        QStringLiteral("--folder"), folder, QStringLiteral("--results"),
                                        m_folder.filePath(name + QStringLiteral(".results"))}))
            return false;
    }
    return true;
}

bool ManyClients::hasArrivedEverywhere() const
{
    return std::all_of(m_folders.begin(), m_folders.end(), [](const QString &folder) {
        const QFileInfoList parts =
            QDir(folder + QStringLiteral("/temporary/tmp")).entryInfoList({QStringLiteral("dev.img*")});
        return std::any_of(parts.begin(), parts.end(), [](const QFileInfo &part) { return part.size() > 0; });
    });
}

bool ManyClients::haveEnded()
{
    return std::none_of(m_processes.begin(), m_processes.end(),
                        [](const auto &process) { return process->isRunning(); });
}

ClientResults ManyClients::results()
{
    pollUntil([this] { return haveEnded(); }, limitMs, 50);
    ClientResults all;
    for (size_t i = 0; i < m_processes.size(); ++i) {
        const QString file = m_folder.filePath(QString::number(i) + QStringLiteral(".results"));
        for (const QString &line :
             QString::fromUtf8(WholeFile::read(file)).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList words = line.split(QLatin1Char(' '));
            if (words.value(0) == QLatin1String("complete")) {
                ++all.sums[words.value(1)];
                all.retries += words.value(2).toInt();
                all.tookMs.append(words.value(3).toDouble());
            } else {
                all.failures.append(line);
            }
        }
    }
    return all;
}

QString ManyClients::errorText() const
{
    QString text;
    for (const auto &process : m_processes)
        text += process->errorText();
    return text;
}
