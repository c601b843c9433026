#include "simulator/standin/StandinTool.h"

#include "simulator/bus/BusClient.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace {

constexpr int failed = 1;
constexpr int programmerArguments = 11;
constexpr char noMicrocontroller[] = "No USB IAP device!\n";

/// How the IAP programmer is given its ids.
int idOf(const QString &signedHex)
{
    bool ok = false;
    const int id = signedHex.toInt(&ok, 16);
    return ok ? id : -1;
}

bool hasBootloader(BusClient &bus)
{
    const QJsonArray devices = bus.state().value(QLatin1String("devices")).toArray();
    return std::any_of(devices.begin(), devices.end(), [](const QJsonValue &device) {
        return device.toObject().value(QLatin1String("state")).toString() == QLatin1String("bootloader");
    });
}

[[noreturn]] void crash()
{
    std::signal(SIGILL, SIG_DFL); // a sanitizer's handler would turn it into an orderly end
    __builtin_trap();
}

} // namespace

StandinTool::StandinTool(const QStringList &arguments) : m_arguments(arguments) {}

int StandinTool::playSteps(const QJsonArray &steps)
{
    for (const QJsonValue &step : steps) {
        if (const std::optional<int> exitCode = playStep(step.toObject()))
            return *exitCode;
    }
    return 0;
}

int StandinTool::playHonestTool()
{
    const QString first = m_arguments.value(0);
    return first == QLatin1String("GetData") || first == QLatin1String("Start") ? playProgrammer()
                                                                                : playFlasher();
}

int StandinTool::playFlasher()
{
    if (m_arguments.value(0) == QLatin1String("shcmd") && m_arguments.value(1) == QLatin1String("reset")) {
        BusClient bus;
        if (bus.connectToOwnBus() && bus.reset()) {
            print("reset done\n");
            return 0;
        }
        print("Open upg device failed\n");
        return failed;
    }
    if (m_arguments.size() != 2 || m_arguments.at(0) != QLatin1String("image")) {
        print("usage: image PATH | shcmd reset\n");
        return failed;
    }
    BusClient bus;
    if (!bus.connectToOwnBus() || !hasBootloader(bus)) {
        print("Open upg device failed\n");
        return failed;
    }
    printProgress();
    if (!burn())
        return failed;
    printSuccess();
    return 0;
}

int StandinTool::playProgrammer()
{
    const QString device = microcontroller();
    if (m_arguments.at(0) == QLatin1String("GetData")) {
        print(device.isEmpty() ? QByteArray("no device\n") : "device: " + device.toUtf8() + ";\n");
        return 0;
    }
    if (m_arguments.size() != programmerArguments || m_arguments.at(1) != QLatin1String("1")) {
        print("usage: GetData VID PID | Start 1 ADDRESS VID PID PORT PORT RATE START CRC FILE\n");
        return failed;
    }
    if (device.isEmpty()) {
        print(noMicrocontroller);
        return failed;
    }
    for (int percent = 0; percent < 100; percent += 10) {
        print("SetProgress: " + QByteArray::number(percent) + '\n');
        QThread::msleep(30);
    }
    if (!program())
        return failed;
    print("SetProgress: 100\n");
    return 0;
}

std::optional<int> StandinTool::playStep(const QJsonObject &step)
{
    const auto has = [&step](const char *key) {
        return step.contains(QLatin1String(key));
    };
    const auto value = [&step](const char *key) {
        return step.value(QLatin1String(key));
    };
    if (has("print")) {
        printAsTold(value("print").toString().toUtf8(), step);
    } else if (has("printHex")) {
        printAsTold(QByteArray::fromHex(value("printHex").toString().toLatin1()), step);
    } else if (has("stderr")) {
        const QByteArray text = value("stderr").toString().toUtf8();
        fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stderr);
        fflush(stderr);
    } else if (has("sleepMs")) {
        QThread::msleep(static_cast<unsigned long>(std::max(0, value("sleepMs").toInt())));
    } else if (has("burn")) {
        if (!burn())
            return failed;
    } else if (has("program")) {
        if (!program())
            return failed;
    } else if (has("reset")) {
        BusClient bus;
        if (!bus.connectToOwnBus() || !bus.reset())
            return failed;
    } else if (has("progress")) {
        printProgress();
    } else if (has("success")) {
        printSuccess();
    } else if (has("flood")) {
        QByteArray line(100, 'x');
        line[99] = '\n';
        for (int left = value("flood").toInt(); left > 0; left -= line.size())
            print(line.right(std::min(left, line.size())));
    } else if (has("garbage")) {
        // Bytes that never occur in UTF-8, line feeds between them.
        QByteArray bytes(value("garbage").toInt(), '\xFF');
        for (int i = 31; i < bytes.size(); i += 32)
            bytes[i] = '\n';
        print(bytes);
    } else if (has("deaf")) {
        std::signal(SIGTERM, SIG_IGN);
    } else if (has("leave")) {
        if (!leaveFile(value("leave").toString()))
            return failed;
    } else if (has("exit")) {
        return value("exit").toInt();
    } else if (has("crash")) {
        crash();
    } else if (has("hang")) {
        QThread::sleep(24 * 60 * 60);
    } else {
        fprintf(stderr, "stand-in: its script has an unknown step: %s\n",
                step.keys().join(QLatin1Char(' ')).toUtf8().constData());
        return 99;
    }
    return std::nullopt;
}

bool StandinTool::leaveFile(const QString &name) const
{
    QFile file(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name);
    return file.open(QIODevice::WriteOnly);
}

void StandinTool::print(const QByteArray &text) const
{
    fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    fflush(stdout);
}

void StandinTool::printAsTold(const QByteArray &text, const QJsonObject &step) const
{
    const int pauseMs = step.value(QLatin1String("pauseMs")).toInt(50);
    int chunk = text.size();
    if (step.value(QLatin1String("byteWise")).toBool())
        chunk = 1;
    else if (step.contains(QLatin1String("splitAt")))
        chunk = step.value(QLatin1String("splitAt")).toInt();
    chunk = std::max(1, chunk);
    print(text.left(chunk));
    for (int at = chunk; at < text.size();) {
        QThread::msleep(static_cast<unsigned long>(pauseMs));
        const int size = chunk == 1 ? 1 : text.size() - at;
        print(text.mid(at, size));
        at += size;
    }
}

void StandinTool::printProgress() const
{
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        print(QByteArray("[upg] Upgrade fwc: image.target.") + partition + " size 4096\n");
        // Long enough for each line to be read by itself.
        QThread::msleep(30);
    }
}

void StandinTool::printSuccess() const
{
    print("Burn image successfully!\n");
}

QString StandinTool::microcontroller() const
{
    const int first = m_arguments.value(0) == QLatin1String("Start") ? 3 : 1;
    const int vendorId = idOf(m_arguments.value(first));
    const int productId = idOf(m_arguments.value(first + 1));
    BusClient bus;
    if (!bus.connectToOwnBus())
        return {};
    const QJsonArray devices = bus.state().value(QLatin1String("devices")).toArray();
    for (const QJsonValue &value : devices) {
        const QJsonObject device = value.toObject();
        if (device.value(QLatin1String("programmable")).toBool() &&
            device.value(QLatin1String("state")).toString() == QLatin1String("application") &&
            device.value(QLatin1String("vendorId")).toInt() == vendorId &&
            device.value(QLatin1String("productId")).toInt() == productId)
            return device.value(QLatin1String("key")).toString();
    }
    return {};
}

bool StandinTool::program() const
{
    QFile image(m_arguments.value(programmerArguments - 1));
    if (!image.open(QIODevice::ReadOnly)) {
        print("Open image failed\n");
        return false;
    }
    BusClient bus;
    const QString device = microcontroller();
    if (!device.isEmpty() && bus.connectToOwnBus() && bus.program(image.readAll(), device))
        return true;
    print(noMicrocontroller);
    return false;
}

bool StandinTool::burn() const
{
    QFile image(m_arguments.value(1));
    if (m_arguments.value(0) != QLatin1String("image") || !image.open(QIODevice::ReadOnly)) {
        print("Open image failed\n");
        return false;
    }
    BusClient bus;
    if (bus.connectToOwnBus() && bus.burn(image.readAll()))
        return true;
    print("Open upg device failed\n");
    fprintf(stderr, "%s\n", bus.errorText().toUtf8().constData());
    return false;
}
