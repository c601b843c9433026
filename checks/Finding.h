#pragma once

#include <QLatin1String>
#include <QString>
#include <QVector>

/// The result of checking one thing that an update needs.
struct Finding
{
    enum class Verdict { Ok, Warning, Problem };

    /// The name of the checked thing. Companions rely on these names: do not change one.
    QString what;
    Verdict verdict = Verdict::Ok;
    /// At most one sentence, in the user's language.
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

/// Returns a finding in one line: verdict, name, text and remedy.
QString describe(const Finding &finding);

/// Returns whether one of the findings is a problem.
bool hasProblem(const QVector<Finding> &findings);

} // namespace Findings
