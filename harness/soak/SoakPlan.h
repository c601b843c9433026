#pragma once

#include "harness/server/FirmwareRoot.h"
#include "harness/soak/SoakFaults.h"

#include <QHash>
#include <QStringList>

#include <optional>

/// Which device comes when: the sound ones by turns, and every thirty-third one fails. Each fault has a model
/// of its own, since server and bus keep their faults for the whole run.
class SoakPlan
{
public:
    struct Turn
    {
        QString model;
        /// Of soakFaults(); none for a sound device.
        std::optional<int> fault;
    };

    SoakPlan();

    Turn turn(int number) const;
    QStringList models() const { return m_sound + m_faulty; }
    /// The bus description's entries, none of which is on the bus at first.
    QList<QJsonObject> devices() const;
    /// The server's own faults.
    QStringList serverFaults(const FirmwareRoot &firmware) const;
    /// Adds an image for every model, with the faults of manifest entries. Returns the images' MD5 sums in
    /// hex by model.
    QHash<QString, QByteArray> addImages(FirmwareRoot &firmware) const;

private:
    QVector<SoakFault> m_faults = soakFaults();
    QStringList m_sound;
    QStringList m_faulty;
};
