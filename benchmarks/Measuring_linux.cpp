#include "benchmarks/Measuring.h"
#include "simulator/files/WholeFile.h"

#include <QFile>

#include <unistd.h>

namespace {

QString inProc(qint64 processId, const char *name)
{
    return QStringLiteral("/proc/%1/%2").arg(processId).arg(QLatin1String(name));
}

QByteArray read(qint64 processId, const char *name)
{
    return WholeFile::read(inProc(processId, name));
}

qint64 kibibytesOf(const QByteArray &text, const QByteArray &label)
{
    const int at = text.indexOf('\n' + label);
    if (at < 0)
        return 0;
    const QByteArray line = text.mid(at + 1, text.indexOf('\n', at + 1) - at - 1);
    return line.mid(label.size()).simplified().split(' ').first().toLongLong();
}

} // namespace

Measuring::Memory Measuring::memoryOf(qint64 processId)
{
    Memory memory;
    memory.rss = kibibytesOf(read(processId, "smaps_rollup"), "Rss:");
    memory.pss = kibibytesOf(read(processId, "smaps_rollup"), "Pss:");
    memory.peak = kibibytesOf(read(processId, "status"), "VmHWM:");
    return memory;
}

bool Measuring::resetPeak(qint64 processId)
{
    QFile file(inProc(processId, "clear_refs"));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
}

QVector<qint64> Measuring::childrenOf(qint64 processId)
{
    QVector<qint64> children;
    const QByteArray name = "task/" + QByteArray::number(processId) + "/children";
    for (const QByteArray &child : read(processId, name.constData()).simplified().split(' ')) {
        if (!child.isEmpty())
            children.append(child.toLongLong());
    }
    return children;
}

double Measuring::processorMs(qint64 processId)
{
    // The name in parentheses may contain blanks. User and system time are the 14th and 15th of all fields.
    const QByteArray text = read(processId, "stat");
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13)
        return -1;
    const double ticks = fields.at(11).toDouble() + fields.at(12).toDouble();
    return ticks * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double Measuring::receivedPayload(const char *networkDevice)
{
    // Each line has the name of a device, followed by the bytes and the packets that it has received.
    const QByteArray all = WholeFile::read(QStringLiteral("/proc/net/dev"));
    const QByteArray name = QByteArray(networkDevice) + ':';
    const int at = all.indexOf(name);
    const QList<QByteArray> columns = all.mid(at + name.size()).simplified().split(' ');
    return at < 0 ? 0 : columns.value(0).toDouble() - 52 * columns.value(1).toDouble();
}
