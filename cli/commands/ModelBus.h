#pragma once

#include "devices/models/ModelTable.h"
#include "devices/usb/UsbBus.h"

#include <QString>

/// A bus that shows only the devices of one model and the devices in their bootloader of another bus.
class ModelBus : public UsbBus
{
public:
    /// `bus` must outlive this object. With an empty `model` every device is shown.
    ModelBus(UsbBus &bus, const QString &model);

    Listing list() override;

private:
    UsbBus &m_bus;
    const QString m_model;
    const ModelTable m_table;
};
