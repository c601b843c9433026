// Tests how the port uses hidapi. This program is linked with a fake hidapi instead of the real one.
#include "devices/hid/HidPort.h"

#include <gtest/gtest.h>

#include <hidapi.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

struct hid_device_
{
    int unused;
};

namespace {

/// The state of the fake library.
struct FakeHidapi
{
    std::atomic<int> inside{0};
    std::atomic<int> overlaps{0};
    std::atomic<int> calls{0};
    std::atomic<int> open{0};
    /// As in the real library, the result of the last call that did not concern an open device.
    std::wstring text = L"Success";
};

FakeHidapi &library()
{
    static FakeHidapi fake;
    return fake;
}

/// A call that takes long enough to overlap with another one.
class Visit
{
public:
    Visit()
    {
        ++library().calls;
        if (++library().inside > 1)
            ++library().overlaps;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    ~Visit() { --library().inside; }
    Visit(const Visit &) = delete;
    Visit &operator=(const Visit &) = delete;
};

hid_device *opened(bool isThere)
{
    const Visit visit;
    library().text = isThere ? L"Success" : L"Permission denied";
    library().open += isThere ? 1 : 0;
    return isThere ? new hid_device : nullptr;
}

} // namespace

// The signatures are hidapi's.
extern "C" {

hid_device_info *HID_API_CALL hid_enumerate(unsigned short, unsigned short)
{
    const Visit visit;
    library().text = L"Success";
    return nullptr;
}

void HID_API_CALL hid_free_enumeration(hid_device_info *)
{
    const Visit visit;
}

hid_device *HID_API_CALL hid_open(unsigned short vendorId, unsigned short, const wchar_t *)
{
    return opened(vendorId != 0);
}

hid_device *HID_API_CALL hid_open_path(const char *path)
{
    return opened(std::string(path) == "there");
}

int HID_API_CALL hid_write(hid_device *, const unsigned char *, size_t length)
{
    const Visit visit;
    return static_cast<int>(length);
}

const wchar_t *HID_API_CALL hid_error(hid_device *device)
{
    const Visit visit;
    return device == nullptr ? library().text.c_str() : L"of the device";
}

void HID_API_CALL hid_close(hid_device *device)
{
    const Visit visit;
    --library().open;
    delete device;
}

} // extern "C"

namespace {

class HidapiPortTest : public testing::Test
{
protected:
    std::unique_ptr<HidPort> m_port = makeHidapiPort();
};

TEST_F(HidapiPortTest, CallsFromSeveralThreadsAreSerialised)
{
    const std::vector<std::function<void()>> visitors{
        [this] { m_port->enumerate(); },
        [this] { m_port->openErrorText(); },
        [this] {
            const std::unique_ptr<HidDevice> device = m_port->open(1, 2);
            device->write("report");
            EXPECT_EQ(device->errorText(), QStringLiteral("of the device"));
        },
        // A separate port still uses the same library.
        [] { makeHidapiPort()->openPath("there"); },
        [this] { m_port->openPath("gone"); },
    };
    library().overlaps = 0;
    library().calls = 0;
    std::vector<std::thread> threads;
    for (const auto &visit : visitors) {
        threads.emplace_back([&visit] {
            for (int i = 0; i < 100; ++i)
                visit();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(library().overlaps, 0);
    EXPECT_GT(library().calls, 500);
    EXPECT_EQ(library().open, 0);
}

TEST_F(HidapiPortTest, ADeviceThatOutlivesItsPortIsClosed)
{
    std::unique_ptr<HidDevice> device = m_port->open(1, 2);
    m_port.reset();
    EXPECT_EQ(device->write("report"), 6);
    device.reset();
    EXPECT_EQ(library().open, 0);
}

TEST_F(HidapiPortTest, TheErrorTextOfTheLastFailedOpenIsKeptAfterSuccessfulCalls)
{
    EXPECT_EQ(m_port->openErrorText(), QString());
    EXPECT_TRUE(m_port->open(1, 2));
    EXPECT_EQ(m_port->openErrorText(), QString());
    EXPECT_FALSE(m_port->openPath("gone"));
    EXPECT_EQ(m_port->openErrorText(), QStringLiteral("Permission denied"));
    EXPECT_TRUE(m_port->open(1, 2));
    m_port->enumerate();
    EXPECT_EQ(m_port->openErrorText(), QStringLiteral("Permission denied"));
}

} // namespace
