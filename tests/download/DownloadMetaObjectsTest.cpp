#include "download/FileDownloader.h"
#include "download/FileDownloaderHTTP.h"
#include "download/FileSizeFetcher.h"
#include "download/ThreadFileDownloader.h"

#include <QMetaMethod>

#include <gtest/gtest.h>

namespace {

/// The class's own entries, in order.
QStringList entriesOf(const QMetaObject &meta)
{
    QStringList entries;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        const bool isSlot = method.methodType() == QMetaMethod::Slot;
        const QString kind = isSignal ? QStringLiteral("signal ")
                             : isSlot ? QStringLiteral("slot ")
                                      : QStringLiteral("other ");
        QStringList parameters;
        const QList<QByteArray> types = method.parameterTypes();
        const QList<QByteArray> names = method.parameterNames();
        for (int p = 0; p < types.size(); ++p)
            parameters.append(QString::fromLatin1(types.at(p) + ' ' + names.at(p)));
        entries.append(kind + QString::fromLatin1(method.name()) + QLatin1Char('(') +
                       parameters.join(QStringLiteral(", ")) + QLatin1Char(')'));
    }
    return entries;
}

TEST(DownloadMetaObjectsTest, TheResumableDownloaderHasItsEightSlotsInOrder)
{
    EXPECT_EQ(
        entriesOf(FileDownloader::staticMetaObject),
        (QStringList{QStringLiteral("slot onReadyRead()"),
                     QStringLiteral("slot onDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal)"),
                     QStringLiteral("slot onMetaDataChanged()"),
                     QStringLiteral("slot onFinished(QNetworkReply* reply)"),
                     QStringLiteral("slot retryDownload()"),
                     QStringLiteral("slot onErrorOccurred(QNetworkReply::NetworkError code)"),
                     QStringLiteral("slot pause()"), QStringLiteral("slot resume()")}));
}

TEST(DownloadMetaObjectsTest, ThePlainDownloaderHasItsSignalAndFiveSlotsInOrder)
{
    EXPECT_EQ(
        entriesOf(FileDownloaderHTTP::staticMetaObject),
        (QStringList{QStringLiteral("signal sigDownloadFile(QString url, QString savePath)"),
                     QStringLiteral("slot onReadyRead()"),
                     QStringLiteral("slot onDownloadProgress(qlonglong bytesReceived, qlonglong bytesTotal)"),
                     QStringLiteral("slot onDownloadFinished()"),
                     QStringLiteral("slot onDownloadFile(QString url, QString savePath)"),
                     QStringLiteral("slot onError(QNetworkReply::NetworkError code)")}));
}

TEST(DownloadMetaObjectsTest, TheSizeProbeHasItsTwoSlotsInOrder)
{
    EXPECT_EQ(entriesOf(FileSizeFetcher::staticMetaObject),
              (QStringList{QStringLiteral("slot onMetaDataChanged()"),
                           QStringLiteral("slot onFinished(QNetworkReply* reply)")}));
}

TEST(DownloadMetaObjectsTest, TheSegmentedDownloadHasItsTwoSignalsInOrderAndNoSlot)
{
    EXPECT_EQ(entriesOf(ThreadFileDownloader::staticMetaObject),
              (QStringList{QStringLiteral("signal setProgressBarValue(int value)"),
                           QStringLiteral("signal setStateLabel(QString text)")}));
}

} // namespace
