#include "harness/soak/SoakPlan.h"

#include "devices/models/ModelLists.h"
#include "devices/models/ModelTable.h"
#include "harness/session/ModelOnBus.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace {

constexpr int soundModels = 5;
constexpr int betweenFaults = 33;
constexpr int imageBytes = 200003;

QByteArray md5(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

bool isManifestFault(const SoakFault &fault)
{
    return QLatin1String(fault.server) == QLatin1String("md5") ||
           QLatin1String(fault.server) == QLatin1String("absent");
}

} // namespace

SoakPlan::SoakPlan()
{
    const ModelTable table;
    for (const ModelRow &row : table.rows()) {
        const QString name = row.name;
        const bool isPlain = row.iapFlag == 0 && !ModelLists::isHidPathModel(name) &&
                             row.vendorId != 0x33C3 && !models().contains(name);
        if (!isPlain)
            continue;
        if (m_sound.size() < soundModels)
            m_sound.append(name);
        else if (m_faulty.size() < m_faults.size())
            m_faulty.append(name);
    }
}

SoakPlan::Turn SoakPlan::turn(int number) const
{
    if (number % betweenFaults != betweenFaults - 1)
        return {m_sound.at(number % m_sound.size()), std::nullopt};
    const int fault = number / betweenFaults % m_faults.size();
    return {m_faulty.at(fault), fault};
}

QList<QJsonObject> SoakPlan::devices() const
{
    QList<QJsonObject> all;
    for (const QString &model : models()) {
        QJsonObject device = ModelOnBus::application(model);
        device.insert(QStringLiteral("start"), QStringLiteral("absent"));
        if (const int fault = m_faulty.indexOf(model); fault >= 0) {
            const QJsonObject &changes = m_faults.at(fault).device;
            for (auto change = changes.begin(); change != changes.end(); ++change)
                device.insert(change.key(), change.value());
        }
        all.append(device);
    }
    return all;
}

QStringList SoakPlan::serverFaults(const FirmwareRoot &firmware) const
{
    QStringList faults;
    for (int index = 0; index < m_faults.size(); ++index) {
        const SoakFault &fault = m_faults.at(index);
        if (QLatin1String(fault.server).isEmpty() || isManifestFault(fault))
            continue;
        const QString file = QFileInfo(firmware.imageFile(m_faulty.at(index))).fileName();
        faults.append(
            QString::fromLatin1(fault.server).replace(QLatin1String("=I"), QLatin1String("=*/") + file));
    }
    return faults;
}

QHash<QString, QByteArray> SoakPlan::addImages(FirmwareRoot &firmware) const
{
    QHash<QString, QByteArray> sums;
    quint32 seed = 1;
    for (const QString &model : models()) {
        const int fault = m_faulty.indexOf(model);
        const QLatin1String server(fault < 0 ? "" : m_faults.at(fault).server);
        if (server == QLatin1String("absent"))
            continue;
        sums.insert(model, md5(firmware.addModel(model, imageBytes, ++seed)));
        if (server == QLatin1String("md5"))
            firmware.setField(model, QStringLiteral("md5"), QString::fromLatin1(md5("another")));
    }
    return sums;
}
