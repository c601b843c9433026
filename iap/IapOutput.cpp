#include "iap/IapOutput.h"

#include <QRegularExpression>

IapChunk readIapChunk(const QString &text)
{
    static const QRegularExpression report(QStringLiteral("SetProgress:\\s*(\\d+)"));
    IapChunk chunk;
    const QRegularExpressionMatch match = report.match(text);
    if (match.hasMatch()) {
        chunk.progress = match.captured(1).toInt();
        chunk.finished = chunk.progress == 100;
    } else {
        chunk.failed = text.contains(QLatin1String("No USB IAP device!"), Qt::CaseInsensitive);
    }
    return chunk;
}

bool reportsSuccess(const QString &output)
{
    static const QRegularExpression success(QStringLiteral("SetProgress:\\s*100(?!\\d)"));
    return success.match(output).hasMatch();
}
