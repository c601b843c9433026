#pragma once

#include "iap/IAPUpDate.h"
#include "tests/common/OwnLockFile.h"
#include "tests/common/RecordingReporter.h"
#include "widgets/TextWindow.h"

#include <QStringList>
#include <QTemporaryDir>

/// A fake main widget that only records the panel's calls.
class FakeIapHost : public IapHost
{
public:
    FakeIapHost()
    {
        m_session.watchStages([this](UpdateStage stage) {
            if (stage == UpdateStage::Idle)
                m_events.append(QStringLiteral("ended"));
        });
    }

    void log(const QString &line) override { m_events.append(QLatin1String("queued ") + line); }
    void setStateTitle(const TranslatableText &title) override
    {
        m_events.append(QLatin1String("title ") + QString::fromUtf8(title.fallback));
        titleKeys.append(QString::fromUtf8(title.key));
    }
    void setProgress(int percent) override { m_events.append(QStringLiteral("progress %1").arg(percent)); }
    void enableStartButton(bool enable) override { m_events.append(QStringLiteral("button %1").arg(enable)); }
    void runDeviceCheck(bool run) override { m_events.append(QStringLiteral("check %1").arg(run)); }

    void connectLogOf(IAPUpDate *panel) override
    {
        QObject::connect(
            panel, &IAPUpDate::sigAppendLog, panel,
            [this](TextWindow *window, const QString &text) {
                logWindows.append(window);
                m_events.append(QLatin1String("log ") + text);
            },
            Qt::DirectConnection);
    }
    IapDevice chosenIapDevice() const override { return device; }
    QString updateFile() const override { return file; }
    UpdateReason checkUpdateFile() override
    {
        if (onCheck)
            onCheck();
        return verdictOnFile;
    }
    void setPictureLevel(double percent) override
    {
        m_events.append(QStringLiteral("picture %1").arg(percent));
    }
    void StartCheckConnectTimer() override { m_events.append(QStringLiteral("monitor on")); }
    void StopCheckConnectTimer() override { m_events.append(QStringLiteral("monitor off")); }
    void untickIapBox() override { m_events.append(QStringLiteral("untick")); }
    UpdateSession &session() override { return m_session; }
    /// Takes the lock as another copy of the program would.
    UpdateLock::Hold takeElsewhere() { return m_lockElsewhere.take(*this); }

    /// Returns the recorded calls, in order, and clears them.
    QStringList takeEvents() { return std::exchange(m_events, {}); }
    const QStringList &events() const { return m_events; }
    bool has(const char *event) const { return m_events.contains(QString::fromUtf8(event)); }

    IapDevice device;
    QString file = QStringLiteral("/srv/dev.bin");
    /// The result of checkUpdateFile(), and a function that it calls.
    UpdateReason verdictOnFile = UpdateReason::None;
    std::function<void()> onCheck;
    QStringList titleKeys;
    QList<TextWindow *> logWindows;

private:
    QStringList m_events;
    QTemporaryDir m_folder;
    UpdateLock m_lock{ownLockFile(m_folder)};
    UpdateSession m_session{m_lock};
    UpdateLock m_lockElsewhere{ownLockFile(m_folder)};
};
