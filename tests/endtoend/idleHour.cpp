// Runs the main widget's connection check as often as it would run in the given number of seconds, without
// waiting. Prints the resources of the process after a while and at the end, as JSON.

#include "app/bringToForeground.h"
#include "tests/common/ProcessUse.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"
#include "widgets/BackgroundWidget.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>

#include <cstdio>

QString firmwareServerAddress()
{
    return QStringLiteral("http://127.0.0.1:9");
}

QStringList firmwareKeys()
{
    return {};
}

namespace {

QJsonObject held()
{
    const ProcessUse use = ProcessUse::of();
    return {{QStringLiteral("descriptors"), use.descriptors},
            {QStringLiteral("threads"), use.threads},
            {QStringLiteral("kilobytes"), use.residentKilobytes}};
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const int ticks = QApplication::arguments().value(1).toInt();
    BackgroundWidget ground(false);
    auto *mainWidget = new bringToForeground(&ground, false, false, QString());
    ground.show();

    auto *timer = mainWidget->findChild<QTimer *>();
    QJsonObject early;
    int done = 0;
    QObject::connect(timer, &QTimer::timeout, mainWidget, [&] {
        ++done;
        if (done == ticks / 4)
            early = held();
        if (done >= ticks)
            QCoreApplication::quit();
    });
    timer->setInterval(0);
    QApplication::exec();
    const QJsonObject result{
        {QStringLiteral("ticks"), done},
        {QStringLiteral("early"), early},
        {QStringLiteral("late"), held()},
        {QStringLiteral("shown"), mainWidget->findChild<QLabel *>(QStringLiteral("statusLabel"))->text()}};
    puts(QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}
