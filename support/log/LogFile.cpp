#include "support/log/LogFile.h"

#include "support/log/PlainFile.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QTextStream>

bool LogFile::appendLine(const QString &filePath, const QString &content)
{
    QFile file(filePath);
    if (!PlainFile::openToAppend(file)) {
        qWarning() << "无法打开文件进行写入";
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << content << '\n';
    stream.flush();
    return stream.status() == QTextStream::Ok;
}

bool LogFile::appendTimestampedLine(const QString &filePath, const QString &text)
{
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    // Concatenated instead of using arg(): "%1" or "%2" inside the text must not be replaced.
    return appendLine(filePath, QLatin1Char('[') + time + QLatin1String("] ") + text);
}

QString LogFile::updateLogPath()
{
    return QStringLiteral("UPDLog.txt");
}

QString LogFile::interfaceLogPath()
{
    return QStringLiteral("log.txt");
}
