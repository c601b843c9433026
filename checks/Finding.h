#pragma once

#include <QLatin1String>
#include <QString>
#include <QVector>

/// What was found out about one thing that an update needs.
struct Finding
{
    enum class Verdict { Ok, Warning, Problem };

    /// What was looked at. Companions rely on it: do not change one.
    QString what;
    Verdict verdict = Verdict::Ok;
    /// One sentence or less, in the language of the person.
    QString text;
    /// What to do about it; empty if there is nothing to do.
    QString remedy;

    bool operator==(const Finding &other) const
    {
        return what == other.what && verdict == other.verdict && text == other.text && remedy == other.remedy;
    }
};

namespace Findings {

Finding ok(const QString &what, const QString &text);
Finding warning(const QString &what, const QString &text, const QString &remedy = {});
Finding problem(const QString &what, const QString &text, const QString &remedy = {});

/// Returns the name that the events of --json use: "ok", "warning" or "problem".
QLatin1String nameOf(Finding::Verdict verdict);

/// Returns a finding in one line: verdict, what was looked at, text and remedy.
QString describe(const Finding &finding);

/// Returns whether one of the findings is a problem.
bool hasProblem(const QVector<Finding> &findings);

} // namespace Findings
