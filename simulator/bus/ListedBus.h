#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QHash>
#include <QJsonObject>
#include <QMap>

#include <optional>

/// A bus that is not shown to any system: libraries that stand in for libusb and hidapi ask for what
/// stands on it, by the operations that README.md describes. HID paths are those of Windows.
class ListedBus : public BusPresenter
{
public:
    explicit ListedBus(bool rootHub);

    void setWriteHandler(WriteHandler handler) override { m_handler = std::move(handler); }
    QString add(int id, const Device &device) override;
    void remove(int id) override;

    /// The answer to a library's request; nothing when the operation is none of theirs.
    std::optional<QJsonObject> perform(const QJsonObject &request);

private:
    /// What a library has opened: node `node` (an index) of the device that was added as `device`.
    struct Opened
    {
        int device = 0;
        int node = 0;
        /// Which of the device's appearances it was: an earlier one is gone for good.
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
