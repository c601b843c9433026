#include "simulator/bus/BusModel.h"

#include "simulator/bus/UpdateModeReport.h"

#include <algorithm>

namespace {
// Limits the memory if a client writes without end.
constexpr int keptReports = 1000;
} // namespace

BusModel::BusModel(const BusDescription &description)
{
    for (const DeviceDescription &described : description.devices) {
        Device device;
        device.description = described;
        m_devices.append(device);
        const int index = m_devices.size() - 1;
        if (described.start == DeviceDescription::Start::Application)
            appear(index, Presence::Application);
        else if (described.start == DeviceDescription::Start::Bootloader)
            appear(index, Presence::Bootloader);
    }
}

int BusModel::indexOf(const QString &key) const
{
    const auto found = std::find_if(m_devices.begin(), m_devices.end(),
                                    [&](const Device &device) { return device.description.key == key; });
    return found == m_devices.end() ? -1 : static_cast<int>(found - m_devices.begin());
}

bool BusModel::plug(int device, Presence as)
{
    if (as == Presence::Absent || m_devices.at(device).presence != Presence::Absent)
        return false;
    forgetChanges(device);
    appear(device, as);
    return true;
}

bool BusModel::unplug(int device)
{
    forgetChanges(device);
    if (m_devices.at(device).presence == Presence::Absent)
        return false;
    m_devices[device].presence = Presence::Absent;
    return true;
}

BusModel::WriteResult BusModel::write(int device, int node, const QByteArray &report, qint64 nowMs)
{
    Device &target = m_devices[device];
    if (target.presence != Presence::Application)
        return {-1, WriteResult::Failure::Gone};
    switch (target.description.writes.answer) {
    case WriteBehaviour::Answer::Refused:
        return {-1, WriteResult::Failure::Refused};
    case WriteBehaviour::Answer::Error:
        return {-1, WriteResult::Failure::Broken};
    case WriteBehaviour::Answer::Short:
        return {std::min<int>(target.description.writes.count, report.size()), WriteResult::Failure::None};
    case WriteBehaviour::Answer::Ok:
        break;
    }
    if (target.reports.size() < keptReports)
        target.reports.append(report);
    const ReportAnswer &answer = target.description.onReport;
    const bool right =
        target.description.nodes.at(node).acceptsReport && report == updateModeReport(answer.layout);
    if (right && answer.action != ReportAnswer::Action::Stay) {
        forgetChanges(device);
        const qint64 leaves = nowMs + answer.leaveAfterMs;
        schedule(device, leaves, Presence::Absent);
        if (answer.action == ReportAnswer::Action::Bootloader)
            schedule(device, leaves + answer.afterMs, Presence::Bootloader);
    }
    return {report.size(), WriteResult::Failure::None};
}

std::optional<int> BusModel::bootloader(int device) const
{
    for (int index = 0; index < m_devices.size(); ++index) {
        if ((device == -1 || device == index) && m_devices.at(index).presence == Presence::Bootloader)
            return index;
    }
    return std::nullopt;
}

std::optional<int> BusModel::burn(int device, const QByteArray &image)
{
    const std::optional<int> target = bootloader(device);
    if (target) {
        m_devices[*target].received = image;
        ++m_devices[*target].burns;
    }
    return target;
}

bool BusModel::program(int device, const QByteArray &image)
{
    Device &target = m_devices[device];
    if (!target.description.programmable || target.presence != Presence::Application)
        return false;
    target.received = image;
    ++target.burns;
    return true;
}

std::optional<int> BusModel::reset(int device, qint64 nowMs)
{
    const std::optional<int> target = bootloader(device);
    if (!target)
        return target;
    ++m_devices[*target].resets;
    const ResetAnswer &answer = m_devices.at(*target).description.onReset;
    if (answer.action != ResetAnswer::Action::Stay) {
        forgetChanges(*target);
        const qint64 leaves = nowMs + answer.leaveAfterMs;
        schedule(*target, leaves, Presence::Absent);
        if (answer.action == ResetAnswer::Action::Return)
            schedule(*target, leaves + answer.afterMs, Presence::Application);
    }
    return target;
}

QString BusModel::applyBehaviour(int device, const QJsonObject &changes)
{
    return m_devices[device].description.applyBehaviour(changes);
}

std::optional<qint64> BusModel::nextChange() const
{
    if (m_changes.isEmpty())
        return std::nullopt;
    return m_changes.first().at;
}

void BusModel::advance(qint64 nowMs)
{
    while (!m_changes.isEmpty() && m_changes.first().at <= nowMs) {
        const Change change = m_changes.takeFirst();
        if (change.to == Presence::Absent)
            m_devices[change.device].presence = Presence::Absent;
        else
            appear(change.device, change.to);
    }
}

void BusModel::appear(int device, Presence as)
{
    m_devices[device].presence = as;
    ++m_devices[device].appearance;
}

void BusModel::schedule(int device, qint64 atMs, Presence to)
{
    const auto behind = std::upper_bound(m_changes.begin(), m_changes.end(), atMs,
                                         [](qint64 at, const Change &change) { return at < change.at; });
    m_changes.insert(behind, Change{atMs, device, to});
}

void BusModel::forgetChanges(int device)
{
    m_changes.erase(std::remove_if(m_changes.begin(), m_changes.end(),
                                   [device](const Change &change) { return change.device == device; }),
                    m_changes.end());
}
