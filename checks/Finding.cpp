#include "checks/Finding.h"

#include <algorithm>

Finding Findings::ok(const QString &what, const QString &text)
{
    return {what, Finding::Verdict::Ok, text, {}};
}

Finding Findings::warning(const QString &what, const QString &text, const QString &remedy)
{
    return {what, Finding::Verdict::Warning, text, remedy};
}

Finding Findings::problem(const QString &what, const QString &text, const QString &remedy)
{
    return {what, Finding::Verdict::Problem, text, remedy};
}

QLatin1String Findings::nameOf(Finding::Verdict verdict)
{
    switch (verdict) {
    case Finding::Verdict::Ok:
        return QLatin1String("ok");
    case Finding::Verdict::Warning:
        return QLatin1String("warning");
    case Finding::Verdict::Problem:
        return QLatin1String("problem");
    }
    return {};
}

QString Findings::describe(const Finding &finding)
{
    constexpr int verdictWidth = 7;
    QString line = QString(nameOf(finding.verdict)).leftJustified(verdictWidth) + QLatin1String("  ") +
                   finding.what + QLatin1String(": ") + finding.text;
    if (!finding.remedy.isEmpty())
        line += QLatin1Char(' ') + finding.remedy;
    return line;
}

bool Findings::hasProblem(const QVector<Finding> &findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding &finding) { return finding.verdict == Finding::Verdict::Problem; });
}
