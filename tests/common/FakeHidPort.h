#pragma once

#include "devices/hid/HidPort.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QVector>

#include <memory>

/// HID interfaces that exist in memory only. Handles may outlive the port. Not thread-safe.
class FakeHidPort : public HidPort
{
public:
    /// A report that was written to an open interface.
    struct Write
    {
        QByteArray path;
        QByteArray report;
    };

    QVector<HidInterface> enumerate() override
    {
        ++m_state->enumerations;
        return m_interfaces;
    }

    std::unique_ptr<HidDevice> open(quint16 vendorId, quint16 productId) override
    {
        for (const HidInterface &entry : m_interfaces) {
            if (entry.vendorId == vendorId && entry.productId == productId)
                return openPath(entry.path);
        }
        return nullptr;
    }

    std::unique_ptr<HidDevice> openPath(const QByteArray &path) override
    {
        m_state->asked.append(path);
        if (path.isNull() || m_refused.contains(path))
            return nullptr;
        return std::make_unique<Device>(m_state, path);
    }

    QString openErrorText() const override { return m_openErrorText; }

    void add(quint32 vendorId, quint32 productId, const QByteArray &path, const QString &markers = QString())
    {
        HidInterface entry;
        entry.vendorId = static_cast<quint16>(vendorId);
        entry.productId = static_cast<quint16>(productId);
        entry.path = path;
        entry.markers = markers;
        m_interfaces.append(entry);
    }
    void removeAll() { m_interfaces.clear(); }
    /// Makes all later attempts to open this path fail.
    void refuse(const QByteArray &path) { m_refused.append(path); }
    /// Sets the error text of failed attempts to open an interface.
    void setOpenErrorText(const QString &text) { m_openErrorText = text; }
    /// Makes all later writes return `result` instead of the size of the report.
    void answerWrites(int result, const QString &errorText = QString())
    {
        m_state->scripted = true;
        m_state->result = result;
        m_state->errorText = errorText;
    }

    int enumerations() const { return m_state->enumerations; }
    /// Returns all paths that were to be opened, including refused and null ones.
    QByteArrayList askedPaths() const { return m_state->asked; }
    /// Returns the paths that are currently open.
    QByteArrayList openPaths() const { return m_state->open; }
    QVector<Write> writes() const { return m_state->writes; }

private:
    struct State
    {
        int enumerations = 0;
        QByteArrayList asked;
        QByteArrayList open;
        QVector<Write> writes;
        bool scripted = false;
        int result = 0;
        QString errorText;
    };

    class Device : public HidDevice
    {
    public:
        Device(std::shared_ptr<State> state, const QByteArray &path) : m_state(std::move(state)), m_path(path)
        {
            m_state->open.append(m_path);
        }
        ~Device() override { m_state->open.removeOne(m_path); }
        Device(const Device &) = delete;
        Device &operator=(const Device &) = delete;

        int write(const QByteArray &report) override
        {
            m_state->writes.append({m_path, report});
            return m_state->scripted ? m_state->result : report.size();
        }
        QString errorText() const override { return m_state->errorText; }

    private:
        std::shared_ptr<State> m_state;
        QByteArray m_path;
    };

    QVector<HidInterface> m_interfaces;
    QByteArrayList m_refused;
    QString m_openErrorText;
    std::shared_ptr<State> m_state = std::make_shared<State>();
};
