#include "simulator/bus/UmockdevNode_linux.h"

#include <QThread>

// GLib has a struct member named like Qt's keyword.
#undef signals
#include <umockdev.h>

#include <linux/hidraw.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstring>
#include <optional>

namespace {

constexpr auto connectedNodeKey = "quillmarsh-appearance";

extern "C" void onConnected(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer node)
{
    static_cast<UmockdevNode *>(node)->connected(client);
}

extern "C" gboolean onIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer node)
{
    static_cast<UmockdevNode *>(node)->control(client);
    return TRUE;
}

extern "C" gboolean onWrite(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer node)
{
    static_cast<UmockdevNode *>(node)->written(client);
    return TRUE;
}

extern "C" gboolean onRead(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer)
{
    // Simulated devices do not send anything.
    umockdev_ioctl_client_complete(client, -1, EAGAIN);
    return TRUE;
}

/// The bytes that answer a request, and the size of the caller's buffer for them.
struct ControlAnswer
{
    QByteArray bytes;
    gsize room = 0;
};

std::optional<ControlAnswer> answerTo(gulong request, const QByteArray &reportDescriptor)
{
    if (request == HIDIOCGRDESCSIZE) {
        const int size = reportDescriptor.size();
        return ControlAnswer{QByteArray(reinterpret_cast<const char *>(&size), sizeof size), sizeof size};
    }
    if (request == HIDIOCGRDESC) {
        hidraw_report_descriptor descriptor{};
        descriptor.size = static_cast<__u32>(reportDescriptor.size());
        memcpy(descriptor.value, reportDescriptor.constData(), descriptor.size);
        return ControlAnswer{QByteArray(reinterpret_cast<const char *>(&descriptor),
                                        static_cast<int>(sizeof descriptor.size + descriptor.size)),
                             sizeof descriptor};
    }
    if (request == HIDIOCGRAWINFO) {
        hidraw_devinfo information{};
        information.bustype = 3;
        return ControlAnswer{QByteArray(reinterpret_cast<const char *>(&information), sizeof information),
                             sizeof information};
    }
    return std::nullopt;
}

/// Returns whether the kernel's hidraw hands a report of this size on: it wants an id and a byte at least.
bool isReportSize(gsize bytes)
{
    constexpr gsize largest = 16384;
    return bytes >= 2 && bytes <= largest;
}

} // namespace

UmockdevNode::UmockdevNode(int device, int index, const QByteArray &reportDescriptor,
                           const BusPresenter::WriteHandler &handler, QObject &context)
    : m_device(device),
      m_index(index),
      m_reportDescriptor(reportDescriptor),
      m_handler(handler),
      m_context(context)
{
}

UmockdevNode::~UmockdevNode()
{
    if (!m_ioctl)
        return;
    g_signal_handlers_disconnect_matched(m_ioctl, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, this);
    g_object_unref(m_ioctl);
}

QString UmockdevNode::attach(UMockdevTestbed *testbed, const QByteArray &path)
{
    m_ioctl = umockdev_ioctl_base_new();
    g_signal_connect(m_ioctl, "client-connected", G_CALLBACK(onConnected), this);
    g_signal_connect(m_ioctl, "handle-ioctl", G_CALLBACK(onIoctl), this);
    g_signal_connect(m_ioctl, "handle-write", G_CALLBACK(onWrite), this);
    g_signal_connect(m_ioctl, "handle-read", G_CALLBACK(onRead), this);
    GError *problem = nullptr;
    umockdev_testbed_attach_ioctl(testbed, path.constData(), m_ioctl, &problem);
    const QString text = problem ? QString::fromUtf8(problem->message) : QString();
    g_clear_error(&problem);
    return text;
}

void UmockdevNode::appear()
{
    m_present = true;
    ++m_appearance;
}

/// Runs `function` on the thread of the bus. Does nothing once the context has been destroyed.
template <typename Function>
void UmockdevNode::onBusThread(Function function) const
{
    if (m_context.thread() == QThread::currentThread())
        function();
    else
        QMetaObject::invokeMethod(&m_context, function, Qt::BlockingQueuedConnection);
}

bool UmockdevNode::isStale(UMockdevIoctlClient *client) const
{
    return !m_present ||
           GPOINTER_TO_INT(g_object_get_data(G_OBJECT(client), connectedNodeKey)) != m_appearance;
}

void UmockdevNode::connected(UMockdevIoctlClient *client) const
{
    onBusThread(
        [&] { g_object_set_data(G_OBJECT(client), connectedNodeKey, GINT_TO_POINTER(m_appearance)); });
}

void UmockdevNode::control(UMockdevIoctlClient *client) const
{
    bool stale = true;
    onBusThread([&] { stale = isStale(client); });
    if (stale) {
        umockdev_ioctl_client_complete(client, -1, ENODEV);
        return;
    }
    auto answer = answerTo(umockdev_ioctl_client_get_request(client), m_reportDescriptor);
    if (!answer) {
        umockdev_ioctl_client_complete(client, -1, ENOTTY);
        return;
    }
    UMockdevIoctlData *pointer = umockdev_ioctl_client_get_arg(client);
    UMockdevIoctlData *target = umockdev_ioctl_data_resolve(pointer, 0, answer->room, nullptr);
    if (!target) {
        umockdev_ioctl_client_complete(client, -1, EFAULT);
        return;
    }
    umockdev_ioctl_data_update(target, 0, reinterpret_cast<guint8 *>(answer->bytes.data()),
                               answer->bytes.size());
    umockdev_ioctl_data_unref(target);
    umockdev_ioctl_client_complete(client, 0, 0);
}

void UmockdevNode::written(UMockdevIoctlClient *client) const
{
    BusPresenter::WriteAnswer answer{-1, ENODEV};
    onBusThread([&] {
        if (isStale(client) || !m_handler)
            return;
        const UMockdevIoctlData *bytes = umockdev_ioctl_client_get_arg(client);
        if (!isReportSize(bytes->data_len)) {
            answer.errorNumber = EINVAL;
            return;
        }
        answer = m_handler(m_device, m_index,
                           QByteArray(reinterpret_cast<const char *>(bytes->data), bytes->data_len));
    });
    umockdev_ioctl_client_complete(client, answer.count, answer.count < 0 ? answer.errorNumber : 0);
}
