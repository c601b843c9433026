#pragma once

#include "simulator/bus/BusModel.h"
#include "simulator/bus/BusPresenter.h"

#include <QElapsedTimer>
#include <QTimer>

/// Keeps a BusPresenter consistent with a BusModel as time passes. Neither of them may be used directly.
/// Lives on the thread that created it; the presenter must outlive it.
class SimulatedBus
{
public:
    SimulatedBus(const BusDescription &description, BusPresenter &presenter);
    ~SimulatedBus();
    SimulatedBus(const SimulatedBus &) = delete;
    SimulatedBus &operator=(const SimulatedBus &) = delete;

    const BusModel &model() const { return m_model; }
    /// Returns the first error of the presenter, or an empty string.
    QString error() const { return m_error; }

    bool plug(int device, BusModel::Presence as);
    bool unplug(int device);
    std::optional<int> burn(int device, const QByteArray &image);
    std::optional<int> reset(int device);
    bool program(int device, const QByteArray &image);
    QString applyBehaviour(int device, const QJsonObject &changes);
    BusModel::WriteResult write(int device, int node, const QByteArray &report);

private:
    void update();
    void present();

    BusModel m_model;
    BusPresenter &m_presenter;
    /// The presented appearance of each device, 0 for none.
    QVector<int> m_shown;
    QElapsedTimer m_clock;
    QTimer m_timer;
    QString m_error;
};
