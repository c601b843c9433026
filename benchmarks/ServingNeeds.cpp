#include "benchmarks/ServingNeeds.h"

#include <algorithm>

namespace {

constexpr double mebibyte = 1048576;
constexpr double secondsPerDay = 86400;
/// The bytes of a full packet divided by those of its payload.
constexpr double packetShare = 1500.0 / 1448;

double bytesOnLine(const ServingCosts &costs, double imageMebibytes)
{
    return (costs.fixedBytes + costs.bytesPerByte * imageMebibytes * mebibyte) * packetShare;
}

double processorMs(const ServingCosts &costs, double imageMebibytes)
{
    return costs.fixedProcessorMs + costs.processorMsPerMebibyte * imageMebibytes;
}

} // namespace

ServingCosts ServingCosts::of(const Sample &small, const Sample &large)
{
    const double mebibytes = large.mebibytes - small.mebibytes;
    ServingCosts costs;
    costs.bytesPerByte = (large.bytes - small.bytes) / (mebibytes * mebibyte);
    costs.fixedBytes = std::max(0.0, small.bytes - costs.bytesPerByte * small.mebibytes * mebibyte);
    costs.processorMsPerMebibyte = std::max(0.0, (large.processorMs - small.processorMs) / mebibytes);
    costs.fixedProcessorMs =
        std::max(0.0, small.processorMs - costs.processorMsPerMebibyte * small.mebibytes);
    return costs;
}

ServingNeeds ServingNeeds::of(const ServingCosts &costs, const ServingLoad &load)
{
    ServingNeeds needs;
    needs.peakFactor = load.peakFactor;
    needs.meanUpdatesPerSecond = load.updatesPerDay / secondsPerDay;
    const double bytes = bytesOnLine(costs, load.imageMebibytes);
    needs.meanGigabits = needs.meanUpdatesPerSecond * bytes * 8 / 1e9;
    needs.terabytesPerDay = load.updatesPerDay * bytes / 1e12;
    needs.meanRequestsPerSecond = needs.meanUpdatesPerSecond * costs.requests;
    needs.meanProcessors = needs.meanUpdatesPerSecond * processorMs(costs, load.imageMebibytes) / 1000;
    const double downloadSeconds = bytes * 8 / (load.userMegabits * 1e6);
    needs.downloadsAtPeak = needs.peak(needs.meanUpdatesPerSecond) * downloadSeconds;
    needs.memoryGibibytesAtPeak = needs.downloadsAtPeak * costs.kibibytesPerDownload / mebibyte;
    needs.cacheGibibytes = load.models * load.imagesPerModel * load.imageMebibytes / 1024;
    needs.originGibibytes = needs.cacheGibibytes * load.edges;
    return needs;
}

ServingLimits ServingLimits::of(const ServingCosts &costs, double imageMebibytes, double gigabits,
                                double processors)
{
    return {gigabits * 1e9 / 8 / bytesOnLine(costs, imageMebibytes),
            processors * 1000 / processorMs(costs, imageMebibytes)};
}
