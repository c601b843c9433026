#pragma once

#include "simulator/bus/BusPresenter.h"

class QObject;
// GLib's names for them; its headers stay out of ours.
typedef struct _UMockdevIoctlBase UMockdevIoctlBase;
typedef struct _UMockdevIoctlClient UMockdevIoctlClient;
typedef struct _UMockdevTestbed UMockdevTestbed;

/// What stands behind one device node of a testbed and answers what programs do to it. It lives as
/// long as the bus, through any number of unpluggings. The testbed calls on a thread of its own;
/// all state belongs to the thread of the bus, where such calls are carried out.
class UmockdevNode
{
public:
    /// `handler` takes what is written, as node `index` of `device`. It is called on the thread of
    /// `context`, whose event loop must run; both must outlive the node.
    UmockdevNode(int device, int index, const QByteArray &reportDescriptor,
                 const BusPresenter::WriteHandler &handler, QObject &context);
    ~UmockdevNode();
    UmockdevNode(const UmockdevNode &) = delete;
    UmockdevNode &operator=(const UmockdevNode &) = delete;

    /// Puts it behind a path; to be done before the node comes into being there. Returns what went
    /// wrong.
    QString attach(UMockdevTestbed *testbed, const QByteArray &path);
    void appear();
    void disappear() { m_present = false; }

    // For the testbed's calls.
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
    /// A handle from before an unplugging must not reach the device that came after it.
    int m_appearance = 0;
};
