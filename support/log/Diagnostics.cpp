#include "support/log/Diagnostics.h"

#include "support/log/BoundedWriter.h"
#include "support/process/BrokenPipes.h"

#include <QString>

#include <cstdlib>

namespace {

constexpr int standardOutputDescriptor = 1;
constexpr int standardErrorDescriptor = 2;
constexpr int capacityBytes = 1024 * 1024;

// Never destroyed: messages may arrive until the very end of the process.
BoundedWriter &standardOutput()
{
    static auto *writer = new BoundedWriter(standardOutputDescriptor, capacityBytes);
    return *writer;
}

BoundedWriter &standardError()
{
    static auto *writer = new BoundedWriter(standardErrorDescriptor, capacityBytes);
    return *writer;
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    standardError().write(qFormatLogMessage(type, context, text).toUtf8() + '\n');
    if (type == QtFatalMsg) {
        standardError().flush(1000);
        std::abort();
    }
}

} // namespace

void Diagnostics::install()
{
    ignoreBrokenPipes();
    qInstallMessageHandler(handleMessage);
}

void Diagnostics::writeStandardOutput(const QByteArray &bytes)
{
    standardOutput().write(bytes);
}

void Diagnostics::flush(int limitMs)
{
    standardError().flush(limitMs / 2);
    standardOutput().flush(limitMs / 2);
}
