#pragma once

#include "devices/ModelTable.h"
#include "devices/UsbBus.h"

#include <QString>

/// The bus as if only devices of one model, and devices in their bootloader, were connected.
class ModelBus : public UsbBus
{
public:
    /// `bus` must outlive this object. An empty `model` leaves every device in.
    ModelBus(UsbBus &bus, const QString &model);

    Listing list() override;

private:
    UsbBus &m_bus;
    const QString m_model;
    const ModelTable m_table;
};
