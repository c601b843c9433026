#pragma once

#include "benchmarks/Results.h"

/// The context of one benchmark.
struct BenchContext
{
    Results &results;
    /// A folder on a disk for temporary files.
    QString folder;
    /// The number of rounds; in each, the product and its peer run once.
    int rounds;
};

/// The benchmarks. Each measures the product and a peer, checks that the work was really done, and adds its
/// rows to the results. Each returns what went wrong; an empty text if nothing did.
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
