#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/session/BusSession.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

// Together with the root hub, these are as many devices as a bus has addresses.
constexpr int deviceCount = 126;
constexpr int interfaceCount = 32;
constexpr int ticks = 300;
const QString model = QStringLiteral("DevMbu");

/// Returns unknown devices followed by the known one, so that the monitor has to look at every descriptor.
QList<QJsonObject> crowdedBus()
{
    const QJsonObject known = ModelOnBus::application(model);
    const int knownInterfaces = known.value(QLatin1String("interfaces")).toArray().size();
    QList<QJsonObject> devices;
    for (int i = 0; i < deviceCount - 1; ++i) {
        QJsonArray interfaces;
        if (i < interfaceCount - knownInterfaces)
            interfaces.append(QJsonObject{{QStringLiteral("number"), 0}});
        devices.append({{QStringLiteral("key"), QStringLiteral("other%1").arg(i)},
                        {QStringLiteral("application"), QJsonObject{{QStringLiteral("vendorId"), 0x1209},
                                                                    {QStringLiteral("productId"), i + 1}}},
                        {QStringLiteral("interfaces"), interfaces}});
    }
    devices.append(known);
    return devices;
}

QVector<double> figures(const QJsonObject &result, const char *name)
{
    QVector<double> list;
    const QJsonArray values = result.value(QLatin1String(name)).toArray();
    for (const QJsonValue value : values)
        list.append(value.toDouble());
    return list;
}

QJsonObject runOnBus(const QString &folder, QString *error)
{
    const QString description = folder + QLatin1String("/bus.json");
    const QString list = folder + QLatin1String("/ControlDevList.json");
    const QString result = folder + QLatin1String("/ticks.json");
    if (!WholeFile::write(description, ModelOnBus::describe(crowdedBus())) ||
        !WholeFile::write(list, "{\"devices\":[{\"id\":\"" + model.toUtf8() + "\",\"is_on\":true}]}")) {
        *error = QStringLiteral("cannot write to ") + folder;
        return {};
    }
    BusSession bus;
    if (!bus.start(description) || !bus.run({Measuring::program("quillmarsh-bench-monitor"),
                                             {list, result, QString::number(ticks)},
                                             folder,
                                             QProcessEnvironment::systemEnvironment(),
                                             folder + QLatin1String("/stdout"),
                                             folder + QLatin1String("/stderr")})) {
        *error = bus.errorText();
        return {};
    }
    const std::optional<int> exitCode = bus.waitForExit(300000);
    if (exitCode != 0) {
        *error = QStringLiteral("the monitor ended with %1").arg(exitCode.value_or(-1));
        return {};
    }
    return QJsonDocument::fromJson(WholeFile::read(result)).object();
}

} // namespace

QString Subjects::monitorTick(BenchContext &context)
{
    QString error;
    const QJsonObject result = runOnBus(context.folder, &error);
    if (!error.isEmpty())
        return error;
    if (result.value(QLatin1String("devices")).toInt() != deviceCount + 1 ||
        result.value(QLatin1String("interfaces")).toInt() != interfaceCount ||
        result.value(QLatin1String("name")).toString() != model ||
        !result.value(QLatin1String("opened")).toBool())
        return QStringLiteral("another bus was seen: ") +
               QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Compact).right(200));
    const QVector<double> tick = figures(result, "tick");
    const QVector<double> own = figures(result, "own");
    const QVector<double> bare = figures(result, "bare");
    context.results.addFigures(QStringLiteral("monitor/tick ms"), tick);
    context.results.addFigures(QStringLiteral("monitor/own share ms"), own);
    context.results.addFigures(QStringLiteral("monitor/bare ms"), bare);
    const double ratio = Measuring::median(tick) / Measuring::median(bare);
    context.results.add({QStringLiteral("One monitor tick, 127 devices, 32 HID interfaces"),
                         Measuring::milliseconds(Measuring::median(tick)),
                         QStringLiteral("bare %1").arg(Measuring::milliseconds(Measuring::median(bare))),
                         Measuring::times(ratio), QStringLiteral("<= 1.5 x"), ratio <= 1.5});
    const double ownMs = Measuring::median(own);
    const double share = ownMs / Measuring::median(bare);
    context.results.add({QStringLiteral("The tick's own share of it, median of %1 (99th percentile %2)")
                             .arg(own.size())
                             .arg(Measuring::milliseconds(Measuring::percentile(own, 0.99))),
                         Measuring::milliseconds(ownMs),
                         QStringLiteral("bare %1").arg(Measuring::milliseconds(Measuring::median(bare))),
                         Measuring::times(share), QStringLiteral("<= 0.35 x"), share <= 0.35});
    return QString();
}
