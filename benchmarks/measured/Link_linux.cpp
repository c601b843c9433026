// quillmarsh-bench-link [--clean] COMMAND [ARGUMENT...]
//
// Runs a command in a network namespace of its own, 10.77.0.2, behind a link of 100 Mbit/s, 40 ms and
// 0.5 % loss, or 20 ms and no loss with --clean; here is 10.77.0.1. The link is two TUN devices, "benchnear"
// on this side, with this process between them, and works on kernels that have no network emulator: the
// packets are real, and so are the losses that TCP sees.

#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <random>
#include <string>
#include <vector>

namespace {

using Time = std::chrono::steady_clock::time_point;
using std::chrono::nanoseconds;

/// Delay and loss of packets from the server. Packets to the server pass without delay.
struct Quality
{
    std::chrono::milliseconds delay;
    double loss;
};

constexpr Quality lossy{std::chrono::milliseconds(40), 0.005};
constexpr Quality clean{std::chrono::milliseconds(20), 0};
constexpr int nanosecondsPerByte = 80; // 100 Mbit/s
/// The limit of packets in the queue and in transit, the same as in the kernel's emulator.
constexpr size_t queueLimit = 1000;

volatile std::sig_atomic_t isEnding = 0;

[[noreturn]] void fail(const char *what)
{
    std::perror(what);
    std::exit(1);
}

int openTun(const char *name)
{
    const int descriptor = open("/dev/net/tun", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        fail("/dev/net/tun");
    ifreq request{};
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    if (ioctl(descriptor, TUNSETIFF, &request) < 0)
        fail(name);
    return descriptor;
}

void configure(const char *name, const char *own, const char *peer)
{
    const std::string device(name);
    const std::string commands = "ip address add " + std::string(own) + " peer " + peer + " dev " + device +
                                 " && ip link set " + device + " mtu 1500 txqueuelen 1000 up" +
                                 " && ip link set lo up" +
                                 // Reacts to losses, as most servers do, and is permitted in every namespace.
                                 " && sysctl -q -w net.ipv4.tcp_congestion_control=reno";
    if (std::system(commands.c_str()) != 0)
        fail("ip");
}

/// One direction of the link.
class Direction
{
public:
    /// Without a quality, packets pass without delay.
    Direction(int from, int to, const Quality *quality) : m_from(from), m_to(to), m_quality(quality) {}

    void receive(Time now)
    {
        std::array<char, 65536> buffer;
        ssize_t count = 0;
        while ((count = read(m_from, buffer.data(), buffer.size())) > 0) {
            if (m_quality && (m_chance(m_engine) < m_quality->loss || m_queue.size() >= queueLimit))
                continue;
            m_free = std::max(m_free, now) + nanoseconds(m_quality ? count * nanosecondsPerByte : 0);
            m_queue.push_back(
                {m_quality ? m_free + m_quality->delay : now, {buffer.data(), buffer.data() + count}});
        }
    }

    void sendDue(Time now)
    {
        while (!m_queue.empty() && m_queue.front().due <= now) {
            const std::vector<char> &bytes = m_queue.front().bytes;
            if (write(m_to, bytes.data(), bytes.size()) < 0 && errno == EAGAIN)
                return;
            m_queue.pop_front();
        }
    }

    /// Returns when the next packet is due; the maximum if there is none.
    Time next() const { return m_queue.empty() ? Time::max() : m_queue.front().due; }
    int from() const { return m_from; }

private:
    struct Packet
    {
        Time due;
        std::vector<char> bytes;
    };

    int m_from;
    int m_to;
    const Quality *m_quality;
    std::deque<Packet> m_queue;
    Time m_free;
    std::mt19937 m_engine{1};
    std::uniform_real_distribution<double> m_chance{0, 1};
};

void carry(Direction &fromServer, Direction &toServer, pid_t server)
{
    while (!isEnding && waitpid(server, nullptr, WNOHANG) == 0) {
        const Time due = std::min(fromServer.next(), toServer.next());
        const auto wait = std::clamp<nanoseconds>(due == Time::max() ? nanoseconds(100000000)
                                                                     : due - std::chrono::steady_clock::now(),
                                                  nanoseconds(0), nanoseconds(100000000));
        const timespec limit{0, wait.count() >= 1000000000 ? 999999999 : static_cast<long>(wait.count())};
        std::array<pollfd, 2> watched{{{fromServer.from(), POLLIN, 0}, {toServer.from(), POLLIN, 0}}};
        ppoll(watched.data(), watched.size(), &limit, nullptr);
        const Time now = std::chrono::steady_clock::now();
        for (Direction *direction : {&fromServer, &toServer}) {
            direction->receive(now);
            direction->sendDue(now);
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const bool isClean = argc > 1 && std::strcmp(argv[1], "--clean") == 0;
    char **command = argv + (isClean ? 2 : 1);
    if (*command == nullptr) {
        std::fputs("usage: quillmarsh-bench-link [--clean] COMMAND [ARGUMENT...]\n", stderr);
        return 1;
    }
    const int here = openTun("benchnear");
    configure("benchnear", "10.77.0.1", "10.77.0.2");
    if (unshare(CLONE_NEWNET) < 0)
        fail("unshare");
    const int there = openTun("benchfar");
    configure("benchfar", "10.77.0.2", "10.77.0.1");

    const pid_t server = fork();
    if (server < 0)
        fail("fork");
    if (server == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        execvp(command[0], command);
        fail(command[0]);
    }
    std::signal(SIGTERM, [](int) { isEnding = 1; });
    Direction fromServer(there, here, isClean ? &clean : &lossy);
    Direction toServer(here, there, nullptr);
    carry(fromServer, toServer, server);
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    return 0;
}
