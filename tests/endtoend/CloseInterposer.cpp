// Preloaded into the program under test: makes single calls fail in ways that the simulated bus and the
// firmware server cannot. Without its variables it has no effect.
//
//   INTERPOSE_FAIL     libusb_init or hid_init or both, separated by spaces: they return an error
//   INTERPOSE_LOOP_MS  libusb_init runs an event loop for this time, as a wait for a tool does
//   INTERPOSE_HOST     looking up this host name never returns
//   INTERPOSE_BUS      listing the USB bus never returns
//   INTERPOSE_MARK     a file that is created as soon as the loop, the look-up or the listing has begun

#include <QEventLoop>
#include <QTimer>

#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

bool isToFail(const char *call)
{
    const char *names = std::getenv("INTERPOSE_FAIL");
    return names && std::strstr(names, call);
}

void createMark()
{
    if (const char *path = std::getenv("INTERPOSE_MARK"))
        close(open(path, O_CREAT | O_WRONLY, 0600));
}

[[noreturn]] void hang()
{
    createMark();
    for (;;)
        pause();
}

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int libusb_init(void **context)
{
    if (isToFail("libusb_init"))
        return -99;
    if (const char *milliseconds = std::getenv("INTERPOSE_LOOP_MS")) {
        QEventLoop loop;
        QTimer::singleShot(std::atoi(milliseconds), &loop, &QEventLoop::quit);
        QTimer::singleShot(0, &loop, &createMark);
        loop.exec();
    }
    return next<int(void **)>("libusb_init")(context);
}

int hid_init()
{
    return isToFail("hid_init") ? -1 : next<int()>("hid_init")();
}

ssize_t libusb_get_device_list(void *context, void ***list)
{
    if (std::getenv("INTERPOSE_BUS"))
        hang();
    return next<ssize_t(void *, void ***)>("libusb_get_device_list")(context, list);
}

int getaddrinfo(const char *node, const char *service, const addrinfo *hints, addrinfo **result)
{
    const char *host = std::getenv("INTERPOSE_HOST");
    if (host && node && std::strcmp(host, node) == 0)
        hang();
    return next<int(const char *, const char *, const addrinfo *, addrinfo **)>("getaddrinfo")(node, service,
                                                                                               hints, result);
}
}
