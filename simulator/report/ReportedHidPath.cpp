#include "simulator/report/ReportedHidPath.h"

#include <QRegularExpression>

namespace {

QString hex4(int value)
{
    return QStringLiteral("%1").arg(value, 4, 16, QLatin1Char('0'));
}

} // namespace

QStringList ReportedHidPath::wordsIn(const QString &text)
{
    static const QRegularExpression word(QStringLiteral("MI_[0-9a-f]{2}|Col[0-9a-f]{2}"),
                                         QRegularExpression::CaseInsensitiveOption);
    QStringList words;
    QRegularExpressionMatchIterator matches = word.globalMatch(text);
    while (matches.hasNext())
        words.append(matches.next().captured().toLower());
    words.removeDuplicates();
    return words;
}

int ReportedHidPath::numberIn(const QStringList &words)
{
    for (const QString &word : words) {
        if (word.startsWith(QLatin1String("mi_")))
            return word.mid(3).toInt(nullptr, 16);
    }
    return -1;
}

QString ReportedHidPath::nodeName(const QString &path)
{
    static const QRegularExpression deviceFile(
        QStringLiteral("^/dev/([A-Za-z0-9_][A-Za-z0-9_.&-]{0,63})\\z"));
    return deviceFile.match(path).captured(1);
}

QString ReportedHidPath::nodeName(const QStringList &words, int ordinal)
{
    return QStringLiteral("hidraw_") + (words + QStringList(QString::number(ordinal))).join(QLatin1Char('_'));
}

QString ReportedHidPath::windowsPath(int vendorId, int productId, const QStringList &words, int ordinal)
{
    QString path = QStringLiteral("\\\\?\\hid#vid_%1&pid_%2").arg(hex4(vendorId), hex4(productId));
    for (const QString &word : words)
        path += QLatin1Char('&') + word;
    return path + QStringLiteral("#7&2b%1&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}").arg(hex4(ordinal));
}
