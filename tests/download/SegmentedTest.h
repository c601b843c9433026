#pragma once

#include "download/FileDownloader.h"
#include "download/ThreadFileDownloader.h"
#include "support/LanguageUtilities.h"
#include "tests/common/RecordingReporter.h"
#include "tests/download/DownloadTest.h"
#include "tests/download/QuickClock.h"

#include <QLabel>
#include <QThreadPool>

#include <atomic>

/// Runs the segmented download as the update does: on a pool thread, while this thread processes the events
/// of the label.
class SegmentedTest : public DownloadTest
{
protected:
    SegmentedTest()
    {
        LanguageUtilities::instance(); // prints once which tables are missing
        serveImage(m_content);
        m_clock.onSleep = [this] {
            hurry();
        };
        QObject::connect(&m_worker, &ThreadFileDownloader::setStateLabel, &m_label,
                         [this](const QString &text) { m_states.append(text); });
        QObject::connect(&m_worker, &ThreadFileDownloader::setProgressBarValue, &m_label,
                         [this](int value) { m_percents.append(value); });
    }

    void serveImage(const QByteArray &content)
    {
        m_content = content;
        m_worker.url = serve(QStringLiteral("/image.bin"), content).toString();
        m_worker.savePath = local("dev.img");
    }
    /// Shortens the segments' delays; called on the worker's thread.
    void hurry()
    {
        for (FileDownloader *segment : qAsConst(m_worker.segments))
            segment->retryDelay = 2;
    }
    /// Runs a download to its end.
    bool run(int count = 10)
    {
        begin(count);
        EXPECT_TRUE(processEventsUntil([this] { return m_isEnded.load(); }, 4 * eventLimitMs));
        if (!m_isEnded)
            m_clock.shutDown();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::sendPostedEvents(); // the last texts and percentages
        return m_result;
    }
    void begin(int count = 10)
    {
        m_isEnded = false;
        m_result = false;
        QThreadPool::globalInstance()->start([this, count] {
            m_result = m_worker.downloadInSegments(count, &m_reporter);
            m_isEnded = true;
        });
    }
    QString part(int index) const { return m_worker.savePath + QStringLiteral("packet_%1").arg(index); }
    bool arePartsGone() const
    {
        for (int i = 0; i < 10; ++i) {
            if (QFile::exists(part(i)))
                return false;
        }
        return true;
    }
    QByteArray result() const { return read(m_worker.savePath); }

    QByteArray m_content = someBytes(100007);
    QLabel m_label;
    QuickClock m_clock;
    RecordingReporter m_reporter;
    ThreadFileDownloader m_worker{nullptr, &m_label, m_clock};
    QStringList m_states;
    QList<int> m_percents;
    std::atomic<bool> m_isEnded{false};
    std::atomic<bool> m_result{false};
};
