#include "cli/output/Output.h"

#include "support/log/BoundedWriter.h"
#include "support/process/BrokenPipes.h"

#include <QElapsedTimer>
#include <QString>

#include <cstdlib>

namespace {

// Holds the events of several hours. A reader that is further behind has stopped reading.
constexpr int capacityBytes = 64 * 1024 * 1024;

// Never destroyed: a thread may be blocked in a write until the end of the process.
BoundedWriter &writerOf(int descriptor)
{
    static auto *output = new BoundedWriter(1, capacityBytes, BoundedWriter::Gap::Silent);
    static auto *errors = new BoundedWriter(2, capacityBytes, BoundedWriter::Gap::Silent);
    return descriptor == 1 ? *output : *errors;
}

bool isVerbose = false;

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (isVerbose || type == QtFatalMsg)
        Output::writeError(qFormatLogMessage(type, context, text).toUtf8() + '\n');
    if (type == QtFatalMsg) {
        Output::flush();
        std::abort();
    }
}

} // namespace

void Output::install(bool verbose)
{
    ignoreBrokenPipes();
    isVerbose = verbose;
    qInstallMessageHandler(handleMessage);
}

void Output::write(const QByteArray &bytes)
{
    writerOf(1).write(bytes);
}

void Output::writeError(const QByteArray &bytes)
{
    writerOf(2).write(bytes);
}

void Output::flush(int limitMs)
{
    QElapsedTimer waited;
    waited.start();
    writerOf(1).flush(limitMs);
    writerOf(2).flush(static_cast<int>(qMax<qint64>(0, limitMs - waited.elapsed())));
}
