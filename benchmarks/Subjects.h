#pragma once

#include "benchmarks/Results.h"

/// What a subject of measurement is given.
struct BenchContext
{
    Results &results;
    /// A folder on a disk for what is fetched and made.
    QString folder;
    /// Alternating rounds of ours and the peer.
    int rounds;
};

/// Each measures its subject beside its peer, checks that the work was really done, and adds its rows.
/// What went wrong is returned; an empty text when nothing did.
namespace Subjects {

QString loopbackDownload(BenchContext &context);
QString lossyDownload(BenchContext &context);
QString cleanDownload(BenchContext &context);
QString clickToSuccess(BenchContext &context);
QString monitorTick(BenchContext &context);
QString startAndMemory(BenchContext &context);
QString downloadMemory(BenchContext &context);
QString md5(BenchContext &context);
QString signature(BenchContext &context);
QString logFlood(BenchContext &context);
QString idle(BenchContext &context);
QString cliStart(BenchContext &context);
QString cliUpdate(BenchContext &context);
QString serve(BenchContext &context);

} // namespace Subjects
