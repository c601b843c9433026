#pragma once

#include "simulator/bus/BusPresenter.h"

class QObject;
// Declared here as in umockdev's headers, which are not included because they include GLib.
typedef struct _UMockdevIoctlBase UMockdevIoctlBase;
typedef struct _UMockdevIoctlClient UMockdevIoctlClient;
typedef struct _UMockdevTestbed UMockdevTestbed;

/// Handles the accesses of programs to a device node of a testbed. It exists as long as the bus, however
/// often the device is unplugged. The testbed calls it on another thread; the calls are forwarded to the
/// thread of the bus, to which all state belongs.
class UmockdevNode
{
public:
    /// `handler` receives what is written to node `index` of `device`. It is called on the thread of
    /// `context`, whose event loop must run; both must outlive the node.
    UmockdevNode(int device, int index, const QByteArray &reportDescriptor,
                 const BusPresenter::WriteHandler &handler, QObject &context);
    ~UmockdevNode();
    UmockdevNode(const UmockdevNode &) = delete;
    UmockdevNode &operator=(const UmockdevNode &) = delete;

    /// Attaches this object to a path. Must be called before the node is created there. Returns the error, or
    /// an empty string.
    QString attach(UMockdevTestbed *testbed, const QByteArray &path);
    void appear();
    void disappear() { m_present = false; }

    // Called by the testbed.
    void connected(UMockdevIoctlClient *client) const;
    void control(UMockdevIoctlClient *client) const;
    void written(UMockdevIoctlClient *client) const;

private:
    template <typename Function>
    void onBusThread(Function function) const;
    bool isStale(UMockdevIoctlClient *client) const;

    const int m_device;
    const int m_index;
    const QByteArray m_reportDescriptor;
    const BusPresenter::WriteHandler &m_handler;
    QObject &m_context;
    UMockdevIoctlBase *m_ioctl = nullptr;
    bool m_present = false;
    /// Counts the appearances, so that a handle opened before the device was unplugged cannot be used
    /// afterwards.
    int m_appearance = 0;
};
