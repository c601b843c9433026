#include "harness/session/ModelOnBus.h"

#include "devices/models/ModelLists.h"
#include "devices/models/ModelTable.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

/// On systems whose paths do not contain the marker, the number of the interface or the ordinal of the
/// collection has the same meaning.
QJsonArray markedInterfaces(const QString &model, const char *marker, int collection)
{
    const auto node = [&](const char *mark) {
        return QStringLiteral("hidraw_%1_%2").arg(QLatin1String(mark), model);
    };
    return {QJsonObject{{QStringLiteral("number"), 0},
                        {QStringLiteral("collection"), collection},
                        {QStringLiteral("node"), node(marker)},
                        {QStringLiteral("acceptsReport"), true}},
            QJsonObject{{QStringLiteral("number"), 1}, {QStringLiteral("node"), node("other")}}};
}

} // namespace

QJsonObject ModelOnBus::application(const QString &model)
{
    const ModelTable table;
    const auto row = std::find_if(table.rows().begin(), table.rows().end(),
                                  [&](const ModelRow &known) { return model == known.name; });
    if (row == table.rows().end())
        return {};
    QJsonObject device{{QStringLiteral("key"), model},
                       {QStringLiteral("application"),
                        QJsonObject{{QStringLiteral("vendorId"), static_cast<int>(row->vendorId)},
                                    {QStringLiteral("productId"), static_cast<int>(row->productId)}}}};
    if (row->iapFlag != 0)
        device.insert(QStringLiteral("programmable"), true);
    if (ModelLists::isMi00(model))
        device.insert(QStringLiteral("interfaces"), markedInterfaces(model, "MI_00", 1));
    else if (ModelLists::isCol04(model))
        device.insert(QStringLiteral("interfaces"), markedInterfaces(model, "Col04", 4));
    return device;
}

QJsonObject ModelOnBus::bootloader(const QString &model)
{
    QJsonObject device = application(model);
    device.insert(QStringLiteral("start"), QStringLiteral("bootloader"));
    return device;
}

QByteArray ModelOnBus::describe(const QList<QJsonObject> &devices)
{
    QJsonArray entries;
    for (const QJsonObject &device : devices)
        entries.append(device);
    return QJsonDocument(QJsonObject{{QStringLiteral("devices"), entries}}).toJson();
}
