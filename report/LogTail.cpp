#include "report/LogTail.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

QStringList LogTail::linesOf(const QByteArray &bytes, bool isCut)
{
    QByteArray rest = bytes;
    const bool isTooLong = rest.size() > maximumBytes;
    if (isTooLong)
        rest = rest.right(static_cast<int>(maximumBytes));
    if (isCut || isTooLong) {
        const int end = rest.indexOf('\n');
        // If no line ends here, keep the rest of the line that was cut.
        rest = end < 0 ? rest : rest.mid(end + 1);
    }
    if (rest.endsWith('\n'))
        rest.chop(1);
    if (rest.isEmpty())
        return {};
    // Pass the length, because the log may contain NUL characters.
    QStringList lines = QString::fromUtf8(rest.constData(), rest.size()).split(QLatin1Char('\n'));
    if (lines.size() > maximumLines)
        lines.erase(lines.begin(), lines.end() - maximumLines);
    for (QString &line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    return lines;
}

LogTail::Tail LogTail::read(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    Tail tail;
    tail.size = file.size();
    const qint64 start = std::max<qint64>(0, tail.size - maximumBytes);
    if (!file.seek(start))
        return {};
    tail.lines = linesOf(file.read(maximumBytes), start > 0);
    return tail;
}
