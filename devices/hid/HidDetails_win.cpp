#include "devices/hid/HidDetails.h"

QByteArray HidDetails::reportDescriptor(const QByteArray & /*path*/)
{
    // Windows keeps a parsed form of it only.
    return {};
}

QString HidDetails::position(const QByteArray & /*path*/)
{
    return {};
}
