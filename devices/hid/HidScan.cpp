#include "devices/hid/HidScan.h"

#include "devices/models/ModelLists.h"
#include "support/log/PlainFile.h"

#include <QDebug>
#include <QFile>
#include <QTextStream>

namespace {

/// The marker by which a model's interface is recognised, and the line that is logged for it.
struct Search
{
    QLatin1String marker;
    // Intentional: the model names in these texts differ from the lists. Users and support know the lines in
    // this form.
    QLatin1String foundText;
};

Search searchFor(const QString &name)
{
    if (ModelLists::isCol04(name))
        return {QLatin1String("Col04"),
                QLatin1String("find DuoDevices at DevMar or DevMbs or DevMbr or DevMcb or DevMcc or DevMce "
                              "or DevMbz")};
    if (ModelLists::isMi00(name))
        return {QLatin1String("MI_00"), QLatin1String("find DuoDevices at DevMbv , DevMah , DevMaj")};
    return {};
}

void logInterface(const HidInterface &seen, const QString &path, const QString &interfaceLogPath)
{
    qDebug().noquote().nospace() << "Found device: VID: " << seen.vendorId << " PID: " << seen.productId
                                 << " Path: " << path;
    QFile file(interfaceLogPath);
    if (!PlainFile::openToAppend(file)) {
        qWarning("Failed to open log.txt for appending.");
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << "Found device: VID: " << seen.vendorId << " PID: " << seen.productId << "Path:" << path << '\n';
}

} // namespace

QLatin1String HidScan::markerOf(const QString &name)
{
    return searchFor(name).marker;
}

bool HidScan::isWanted(const HidInterface &seen, quint32 vendorId, quint32 productId, QLatin1String marker)
{
    if (marker.isEmpty() || seen.path.isNull() || seen.vendorId != vendorId || seen.productId != productId)
        return false;
    return QString::fromUtf8(seen.path).contains(marker, Qt::CaseInsensitive) ||
           seen.markers.contains(marker, Qt::CaseInsensitive);
}

std::unique_ptr<HidDevice> HidScan::findInterface(HidPort &port, const QString &name, quint32 vendorId,
                                                  quint32 productId, Reporter &reporter,
                                                  const QString &interfaceLogPath)
{
    const Search search = searchFor(name);
    const QVector<HidInterface> interfaces = port.enumerate();
    for (const HidInterface &seen : interfaces) {
        const QString path = QString::fromUtf8(seen.path);
        logInterface(seen, path, interfaceLogPath);
        if (seen.vendorId != vendorId || seen.productId != productId || search.marker.isEmpty())
            continue;
        qDebug().noquote().nospace() << "duoDevstr: " << path;
        if (!isWanted(seen, vendorId, productId, search.marker))
            continue;
        if (std::unique_ptr<HidDevice> handle = port.openPath(seen.path)) {
            reporter.log(search.foundText);
            return handle;
        }
    }
    reporter.log(QStringLiteral("not find DuoDevices!"));
    return nullptr;
}

void HidScan::run(HidPort &port, ChosenDevice &device, Reporter &reporter, const QString &interfaceLogPath)
{
    // The new handle is opened before the old one is closed: if opening fails, the old one stays.
    if (std::unique_ptr<HidDevice> handle =
            findInterface(port, device.name, device.vendorId, device.productId, reporter, interfaceLogPath))
        device.hidHandle = std::move(handle);
}
