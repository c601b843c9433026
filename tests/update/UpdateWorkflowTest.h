#pragma once

#include "simulator/files/WholeFile.h"
#include "tests/update/FlasherTest.h"
#include "update/UpdateWorkflow.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

/// A fake source whose results are set by the test. Its events are recorded among the reporter's log lines.
class FakeFirmwareSource : public FirmwareSource
{
public:
    explicit FakeFirmwareSource(Reporter &reporter) : m_reporter(reporter) {}

    QString fetchFirmware(const UpdateRequest & /*request*/, QJsonObject *manifest) override
    {
        m_reporter.log(QStringLiteral("(fetch)"));
        *manifest = root;
        if (onFetch)
            onFetch();
        return path;
    }
    QString deviceKey() const override { return key; }
    UpdateReason failure() const override { return UpdateReason::DownloadFailed; }

    /// Sets an image at `imagePath` and a manifest with this MD5 for it.
    void serve(const QString &imagePath, const QString &sum)
    {
        QDir().mkpath(QFileInfo(imagePath).path());
        EXPECT_TRUE(WholeFile::write(imagePath, "hello"));
        path = imagePath;
        const QJsonObject entry{{QStringLiteral("md5"), sum}};
        root = {{QStringLiteral("CurrentVersion"), QJsonObject{{QStringLiteral("M1"), entry}}}};
    }

    QString path;
    QString key = QStringLiteral("M1");
    QJsonObject root;
    std::function<void()> onFetch;

private:
    Reporter &m_reporter;
};

class FakeUpdateHost : public UpdateHost
{
public:
    explicit FakeUpdateHost(Reporter &reporter) : m_reporter(reporter) {}

    bool sendUpdateMode() override
    {
        m_reporter.log(QStringLiteral("(send)"));
        return entersBootloader;
    }
    bool startIapPanel() override
    {
        m_reporter.log(QStringLiteral("(panel)"));
        return hasPanel;
    }
    void setPictureLevel(double /*percent*/) override {}
    void repaintPicture() override {}

    bool entersBootloader = true;
    bool hasPanel = true;

private:
    Reporter &m_reporter;
};

/// Whole updates with a fake server, a fake window and flashers that play scripts.
class UpdateWorkflowTest : public FlasherTest
{
protected:
    UpdateWorkflowTest()
    {
        m_paths.temporaryFolder = m_folder.filePath(QStringLiteral("Tmp"));
        m_choices.setWriteType(QStringLiteral("USB"));
        m_choices.setRestartCheckable(true);
        setDevice(QStringLiteral("M1"), 0);
        writeFlasher(QStringLiteral("usb"), m_success);
        writeFlasher(QStringLiteral("hid"), m_success);
    }

    /// Makes a flasher perform these steps when it burns, and nothing when it resets.
    void writeFlasher(const QString &name, const ToolSteps &burn)
    {
        m_tools.writeScript(
            name, QJsonDocument(QJsonObject{{QStringLiteral("image"), StandinScript::runs({burn.toJson()})},
                                            {QStringLiteral("shcmd"), StandinScript::runs({QJsonArray()})}}));
    }

    void setDevice(const QString &name, quint8 iapFlag)
    {
        ChosenDevice device;
        device.name = name;
        device.iapFlag = iapFlag;
        m_choices.setFound(device, false);
    }
    void serve(const QString &sum = QStringLiteral("5d41402abc4b2a76b9719d911017c592"))
    {
        m_source.serve(m_paths.downloadedImage(), sum);
    }
    /// Runs the update that was begun in the session, or a new one. Returns its result.
    UpdateResult run()
    {
        if (!m_session->isRunning())
            m_session.begin();
        const UpdateWorkflow::Dependencies dependencies{m_reporter, *m_session, m_choices, m_host,
                                                        m_clock,    m_paths,    m_launch,  m_source};
        UpdateWorkflow(dependencies, m_choices.request()).run();
        return m_session->lastResult();
    }
    /// Returns the reported events, without the lines of the MD5 check.
    QStringList events() const
    {
        QStringList kept;
        for (const QString &event : m_reporter.events()) {
            if (!event.contains(QLatin1String("FileMd5:")) && !event.contains(QLatin1String("serverjson:")))
                kept.append(event);
        }
        return kept;
    }
    QStringList folderAndFetch(const QString &verdict) const
    {
        return {QStringLiteral("log usb tmpPath: ") + m_paths.temporaryFolder, QStringLiteral("log (fetch)"),
                QStringLiteral("log now check downloadfile md5.."), QStringLiteral("log ") + verdict};
    }

    const ToolSteps m_success = ToolStep::print("Burn image successfully!\n");
    const QStringList m_controlsBack{QStringLiteral("check 1"), QStringLiteral("button 1")};
    const QStringList m_blocked{
        QStringLiteral("log Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!")};
    const QStringList m_enter{QStringLiteral("title Current Status: Attempting to Upgrade..."),
                              QStringLiteral("log try to bootloader..."), QStringLiteral("log (send)"),
                              QStringLiteral("log TryToBootloader Success!")};
    const QStringList m_burnUsb{
        QStringLiteral("log Current writeType is: USB."), QStringLiteral("log in usb write mode.."),
        QStringLiteral("log Burn image successfully!\n"), QStringLiteral("progress 100")};
    const QStringList m_burned{QStringLiteral("log Burn Image Success"),
                               QStringLiteral("title Current Status: Upgrade Successful")};
    const QStringList m_failure{QStringLiteral("log Burn Image Failed"),
                                QStringLiteral("title Current Status: Upgrade Failed!")};
    const QStringList m_resetUsb{QStringLiteral("log run usb reset."),
                                 QStringLiteral("log try to RunCmdReset..."),
                                 QStringLiteral("log RunCmdReset Done.")};

    QTemporaryDir m_folder;
    LaunchOptions m_launch;
    FakeFirmwareSource m_source{m_reporter};
    FakeUpdateHost m_host{m_reporter};
};
