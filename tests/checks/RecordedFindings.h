#pragma once

#include "cli/output/EventSink.h"

#include <QMap>
#include <QStringList>
#include <QVector>

/// Records the findings of a command.
class RecordedFindings : public EventSink
{
public:
    void device(const DeviceInfo & /*device*/) override {}
    void stage(UpdateStage /*stage*/) override {}
    void progress(const UpdateProgress & /*progress*/) override {}
    void log(const QString & /*line*/) override {}
    void result(const UpdateSummary & /*summary*/) override {}
    void finding(const Finding &finding) override { findings.append(finding); }
    void message(const QString & /*sentence*/) override {}

    /// Returns "what verdict" of every finding that is not "ok", in order.
    QStringList remarks() const
    {
        QStringList texts;
        for (const Finding &finding : findings) {
            if (finding.verdict != Finding::Verdict::Ok)
                texts.append(finding.what + QLatin1Char(' ') + Findings::nameOf(finding.verdict));
        }
        return texts;
    }

    /// Returns the finding about `what` or, if there is none, a problem whose text says so.
    Finding about(const char *what) const
    {
        for (const Finding &finding : findings) {
            if (finding.what == QLatin1String(what))
                return finding;
        }
        return {QString(), Finding::Verdict::Problem,
                QStringLiteral("no finding about ") + QLatin1String(what), QString()};
    }

    QVector<Finding> findings;
};
