#pragma once

#include "tests/download/DownloadTest.h"
#include "tests/download/PumpingClock.h"
#include "tests/support/RecordedDebugStream.h"
#include "tests/support/RecordingReporter.h"

#include "download/FileDownloader.h"
#include "download/ThreadFileDownloader.h"

#include <QDir>
#include <QNetworkAccessManager>

/// The segmented download on the test's own thread.
class ThreadFileDownloaderTest : public DownloadTest
{
protected:
    explicit ThreadFileDownloaderTest(bool isFast = false) : m_clock(isFast)
    {
        m_worker.url = url().toString();
        m_worker.savePath = local("dev.img");
        QObject::connect(&m_worker, &ThreadFileDownloader::setProgressBarValue, &m_worker,
                         [this](int value) { m_progress.append(value); });
        QObject::connect(&m_worker, &ThreadFileDownloader::setStateLabel, &m_worker,
                         [this](const QString &text) { m_states.append(text); });
    }
    bool fetch() { return m_worker.downloadInSegments(10, &m_log); }
    QString part(int i) const { return m_worker.savePath + QStringLiteral("packet_%1").arg(i); }
    QByteArray image() const { return contentOf(m_worker.savePath); }
    QStringList filesLeft() const { return QDir(m_folder.path()).entryList(QDir::Files); }
    /// How many of the segments still have network access.
    int networksLeft() const
    {
        int count = 0;
        for (const FileDownloader *segment : m_worker.segments)
            count += segment->findChildren<QNetworkAccessManager *>().size();
        return count;
    }

    PumpingClock m_clock;
    RecordingReporter m_log;
    ThreadFileDownloader m_worker{nullptr, nullptr, m_clock};
    QList<int> m_progress;
    QStringList m_states;
};
