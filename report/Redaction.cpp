#include "report/Redaction.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

/// Returns the folder without separators at its end; empty for the root of a file system, which would match
/// every path.
QString withoutTrailingSeparators(QString folder)
{
    while (folder.endsWith(QLatin1Char('/')) || folder.endsWith(QLatin1Char('\\')))
        folder.chop(1);
    const bool isDrive = folder.size() == 2 && folder.endsWith(QLatin1Char(':'));
    return isDrive ? QString() : folder;
}

/// Returns a pattern for the folder with either separator, which may be doubled by escaping.
QString folderPattern(const QString &folder)
{
    static const QRegularExpression separators(QStringLiteral("[/\\\\]+"));
    QStringList parts = folder.split(separators);
    for (QString &part : parts)
        part = QRegularExpression::escape(part);
    return parts.join(QLatin1String("[/\\\\]+"));
}

QStringList longestFirst(QStringList texts)
{
    texts.removeAll(QString());
    texts.removeDuplicates();
    std::stable_sort(texts.begin(), texts.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return texts;
}

} // namespace

Redaction::Redaction(const QStringList &folders, const QStringList &names, Qt::CaseSensitivity sensitivity)
{
    QStringList usableFolders;
    for (const QString &folder : folders)
        usableFolders.append(withoutTrailingSeparators(folder));
    QStringList folderPatterns;
    for (const QString &folder : longestFirst(usableFolders))
        folderPatterns.append(folderPattern(folder));
    QStringList namePatterns;
    for (const QString &name : longestFirst(names))
        namePatterns.append(QRegularExpression::escape(name));
    m_isEmpty = folderPatterns.isEmpty() && namePatterns.isEmpty();
    // For an empty list, use a pattern that never matches.
    const auto anyOf = [](const QStringList &patterns) {
        return patterns.isEmpty() ? QStringLiteral("(?!)") : patterns.join(QLatin1Char('|'));
    };
    QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
    if (sensitivity == Qt::CaseInsensitive)
        options |= QRegularExpression::CaseInsensitiveOption;
    m_expression.setPattern(
        QStringLiteral("(?<home>(?:%1)(?![\\w-]))|(?<![\\p{L}\\p{N}])(?:%2)(?![\\p{L}\\p{N}])")
            .arg(anyOf(folderPatterns), anyOf(namePatterns)));
    m_expression.setPatternOptions(options);
}

QString Redaction::apply(const QString &text) const
{
    if (m_isEmpty)
        return text;
    QString result;
    int end = 0;
    QRegularExpressionMatchIterator matches = m_expression.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += text.midRef(end, match.capturedStart() - end);
        result += match.capturedLength(1) > 0 ? QLatin1String("<home>") : QLatin1String("<user>");
        end = match.capturedEnd();
    }
    return result + text.midRef(end);
}

QJsonValue Redaction::apply(const QJsonValue &value) const
{
    if (value.isString())
        return apply(value.toString());
    if (value.isArray()) {
        QJsonArray result;
        for (const QJsonValue each : value.toArray())
            result.append(apply(each));
        return result;
    }
    if (value.isObject()) {
        QJsonObject result = value.toObject();
        for (auto each = result.begin(); each != result.end(); ++each)
            each.value() = apply(QJsonValue(each.value()));
        return result;
    }
    return value;
}
