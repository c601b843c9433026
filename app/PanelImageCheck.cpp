#include "app/PanelImageCheck.h"

#include "support/Clock.h"
#include "support/log/Reporter.h"
#include "update/SignatureCheck.h"
#include "update/UpdateTitles.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QtConcurrent>

UpdateReason checkPanelImage(Reporter &reporter, const QStringList &keys, const FirmwareImage &image,
                             const QString &model)
{
    if (keys.isEmpty() || image.origin == FirmwareImage::Origin::Server)
        return UpdateReason::None;
    QEventLoop loop;
    QFutureWatcher<UpdateReason> watcher;
    QObject::connect(&watcher, &QFutureWatcher<UpdateReason>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run([&] {
        return SignatureCheck(reporter, Clock::real(), keys).checkLocalImage(image.path, model, false);
    }));
    loop.exec();
    // Something else may have ended the loop, and the thread refers to objects of the caller.
    watcher.waitForFinished();
    const UpdateReason reason = watcher.result();
    if (reason == UpdateReason::SignatureRefused)
        reporter.setStateTitle(UpdateTitles::md5Mismatch);
    return reason;
}
