#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QHash>
#include <QJsonObject>
#include <QMap>

#include <optional>

/// A bus that the operating system cannot see: the replacements for libusb and hidapi request its devices
/// with the operations that README.md describes. HID paths have the form of Windows.
class ListedBus : public BusPresenter
{
public:
    explicit ListedBus(bool rootHub);

    void setWriteHandler(WriteHandler handler) override { m_handler = std::move(handler); }
    QString add(int id, const Device &device) override;
    void remove(int id) override;

    /// Returns the answer to a request of a library, or nothing if the operation is unknown.
    std::optional<QJsonObject> perform(const QJsonObject &request);

private:
    /// An open handle: node `node` (an index) of the device that was added as `device`.
    struct Opened
    {
        int device = 0;
        int node = 0;
        /// The appearance of the device for which the handle was opened. It becomes invalid when the device
        /// disappears.
        int appearance = 0;
    };
    struct Shown
    {
        Device device;
        int appearance = 0;
    };

    QJsonObject usbDevices() const;
    QJsonObject hidInterfaces() const;
    QJsonObject open(const QByteArray &path);
    QJsonObject write(int handle, const QByteArray &report) const;
    QList<int> inBusOrder() const;

    bool m_rootHub;
    WriteHandler m_handler;
    QMap<int, Shown> m_shown;
    QHash<int, Opened> m_opened;
    int m_lastAppearance = 0;
    int m_lastHandle = 0;
};
