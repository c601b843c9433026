#include "simulator/files/WholeFile.h"
#include "tests/update/FirmwareFetchTest.h"

#include <QPushButton>

namespace {

class FirmwareFetchImageTest : public FirmwareFetchTest
{
protected:
    /// Runs a fetch for a device in its bootloader, whose model the user picks, and returns its result.
    /// `before` is the device that was connected before.
    QString fetchForPickedModel(const char *before, quint8 iapFlag)
    {
        setDevice(QString::fromLatin1(before), iapFlag);
        m_choices.setFound(m_choices.device(), true);
        ChosefirmwareWidget chooser(m_paths.manifestUrl);
        QTimer whenShown;
        QObject::connect(&whenShown, &QTimer::timeout, &chooser, [&] {
            if (chooser.isVisible())
                chooser.findChild<QPushButton *>(QStringLiteral("choose M1"))->click();
        });
        whenShown.start(5);
        return fetch(&chooser);
    }
};

TEST_F(FirmwareFetchImageTest, ASuccessReportsEachStepInOrderAndStoresTheImage)
{
    ASSERT_TRUE(WholeFile::write(m_paths.temporaryFolder + QStringLiteral("/tmp/stale")));
    const QString url = m_rig.server.url(QStringLiteral("/m1.img")).toString();

    EXPECT_EQ(fetch(), m_paths.downloadedImage());
    EXPECT_EQ(
        m_reporter.events(),
        m_parsing + manifestRead() +
            (QStringList{
                QStringLiteral("log parse json Success:"),
                QStringLiteral("log Keys under 'CurrentVersion':M1"),
                QStringLiteral("log Found fileURL forM1"),
                QStringLiteral("title Current Status: Successfully Parsed File Address"),
                QStringLiteral("log try to clear tmp dir/tmp"), QStringLiteral("log try to download file..."),
                QStringLiteral("title Current Status: Trying to Retrieve File..."),
                QStringLiteral("log is img file type."),
                QStringLiteral("log Begin To Downloader Json: ") + url,
                QStringLiteral("log Wait Servier Return File Size..."),
                QStringLiteral("log AllDownloadFileSize: 65539"), QStringLiteral("log Begin Download now..."),
                QStringLiteral("log Now merge Files..."), QStringLiteral("log merge Files Success"),
                QStringLiteral("title Current Status: File Downloaded Successfully"),
                QStringLiteral("log Download Success")}));
    EXPECT_EQ(m_reporter.fallbacks(), (QStringList{QStringLiteral("当前状态: 尝试从服务器解析固件地址..."),
                                                   QStringLiteral("当前状态: 解析文件地址成功"),
                                                   QStringLiteral("当前状态: 尝试获取文件..."),
                                                   QStringLiteral("当前状态: 下载文件成功")}));
    EXPECT_EQ(contentOf(m_paths.downloadedImage()), m_image);
    EXPECT_EQ(QDir(m_paths.temporaryFolder + QStringLiteral("/tmp")).entryList(QDir::Files),
              QStringList{QStringLiteral("dev.img")});
    EXPECT_EQ(m_key, QStringLiteral("M1"));
    EXPECT_TRUE(m_manifest.contains(QStringLiteral("CurrentVersion")));
}

TEST_F(FirmwareFetchImageTest, TheImageIsFetchedInTenRanges)
{
    fetch();
    QSet<QByteArray> ranges;
    for (const ServerRequest &request : m_rig.server.requests()) {
        if (!request.header("range").isEmpty())
            ranges.insert(request.header("range"));
    }
    EXPECT_EQ(ranges.size(), 10);
}

TEST_F(FirmwareFetchImageTest, TheManifestIsStoredBesideTheProgramInAFolderThatIsCreatedIfNeeded)
{
    ASSERT_FALSE(QDir(m_paths.applicationDir).exists());
    fetch();
    EXPECT_EQ(contentOf(m_paths.applicationDir + QStringLiteral("/qmake/dev.jn")), m_manifestText.toUtf8());
}

TEST_F(FirmwareFetchImageTest, AnIapDevicesImageIsStoredAsDevBin)
{
    setDevice(QStringLiteral("M1"), 1);
    EXPECT_EQ(fetch(), m_paths.temporaryFolder + QStringLiteral("/tmp/dev.bin"));
    EXPECT_TRUE(m_reporter.logLines().contains(QStringLiteral("is bin file type.")));
    EXPECT_EQ(contentOf(m_paths.downloadedIapImage()), m_image);
    EXPECT_FALSE(QFile::exists(m_paths.downloadedImage()));
}

TEST_F(FirmwareFetchImageTest, AnImageThatCannotBeDownloadedIsReportedWithItsReason)
{
    m_rig.setFault(QStringLiteral("stall:path=/m1.img"));
    PumpingClock clock;
    ThreadFileDownloader impatient(clock);
    m_choices.chooseImage({QStringLiteral("/srv/before.img"), FirmwareImage::Origin::User, false, {}});
    const QString path = onWorkerThread([&] {
        FirmwareFetch run(m_reporter, *m_session, m_choices, Clock::real(), m_paths, m_downloader, impatient,
                          nullptr);
        const QString fetched = run.fetchFirmware(m_choices.request(), &m_manifest);
        m_failure = run.failure();
        return fetched;
    });
    EXPECT_EQ(path, QString());
    EXPECT_EQ(m_failure, UpdateReason::DownloadFailed);
    EXPECT_EQ(m_reporter.events().mid(m_reporter.events().size() - 2),
              (QStringList{QStringLiteral("title Current Status: Error Occurred While Downloading File!"),
                           QStringLiteral("log Download ERROR!")}));
    EXPECT_EQ(m_reporter.fallbacks().last(), QStringLiteral("当前状态: 下载文件发生错误!"));
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/before.img"));
}

TEST_F(FirmwareFetchImageTest, ADeviceInItsBootloaderIsLookedUpByTheChosenName)
{
    EXPECT_EQ(fetchForPickedModel("Other", 0), m_paths.downloadedImage());
    EXPECT_EQ(m_reporter.events().mid(0, 4),
              (QStringList{QStringLiteral("log Find BootloaderMode.!, Show ChosefirmwareWidget."),
                           QStringLiteral("log ChoseDev: M1")}) +
                  m_parsing);
    EXPECT_EQ(m_key, QStringLiteral("M1"));
    EXPECT_EQ(m_choices.device().name, QStringLiteral("Other"));
}

TEST_F(FirmwareFetchImageTest, TheImageOfADeviceInItsBootloaderIsStoredAsDevImgAlsoAfterAnIapDevice)
{
    EXPECT_EQ(fetchForPickedModel("Other", 1), m_paths.downloadedImage());
    EXPECT_TRUE(m_reporter.logLines().contains(QStringLiteral("is img file type.")));
    EXPECT_EQ(contentOf(m_paths.downloadedImage()), m_image);
    EXPECT_FALSE(QFile::exists(m_paths.downloadedIapImage()));
}

TEST_F(FirmwareFetchImageTest, AnEarlierDownloadIsNoLongerTheImageToBurnBeforeItsFileIsDeleted)
{
    const QString before = QStringLiteral("/srv/before.img");
    m_choices.chooseImage({before, FirmwareImage::Origin::User, false, {}});
    ASSERT_TRUE(WholeFile::write(m_paths.downloadedImage(), "checked earlier"));
    m_choices.useServerImage(m_paths.downloadedImage(), QStringLiteral("M1"));
    QByteArray whenDropped;
    m_choices.watchImage([&] { whenDropped = contentOf(m_paths.downloadedImage()); });
    EXPECT_EQ(fetch(), m_paths.downloadedImage());
    EXPECT_EQ(m_choices.image().path, before) << "the new file has not been checked yet";
    EXPECT_EQ(whenDropped, "checked earlier");
}

TEST_F(FirmwareFetchImageTest, WithoutABootloaderTheChooserStaysHidden)
{
    ChosefirmwareWidget chooser(m_paths.manifestUrl);
    bool wasShown = false;
    QObject::connect(&chooser, &ChosefirmwareWidget::sigSetHide, &chooser,
                     [&](bool close) { wasShown = wasShown || !close; });
    EXPECT_EQ(fetch(&chooser), m_paths.downloadedImage());
    EXPECT_FALSE(wasShown);
}

TEST_F(FirmwareFetchImageTest, AChooserClosedWithoutAPickEndsTheFetch)
{
    m_choices.setFound(m_choices.device(), true);
    ChosefirmwareWidget chooser(m_paths.manifestUrl);
    QTimer whenShown;
    QObject::connect(&whenShown, &QTimer::timeout, &chooser, [&] { chooser.close(); });
    whenShown.start(50);
    EXPECT_EQ(fetch(&chooser), QString());
    EXPECT_EQ(
        m_reporter.events(),
        (QStringList{QStringLiteral("log Find BootloaderMode.!, Show ChosefirmwareWidget."),
                     QStringLiteral("log ChoseDev: "), QStringLiteral("log ChoseDev is null，return")}));
    EXPECT_EQ(m_key, QString());
    EXPECT_EQ(m_failure, UpdateReason::NoModelChosen);
}

} // namespace
