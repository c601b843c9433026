#pragma once

#include <QString>

/// What one caching server was seen to spend on updates.
struct ServingCosts
{
    /// Requests of an update: manifest, size, ten ranges, and what was repeated.
    double requests = 0;
    /// Bytes on the line for an update beside the image, and for each byte of the image.
    double fixedBytes = 0;
    double bytesPerByte = 0;
    /// Processor time of the server for an update, and for each MiB of the image.
    double fixedProcessorMs = 0;
    double processorMsPerMebibyte = 0;
    /// Memory for a download that is under way, in KiB.
    double kibibytesPerDownload = 0;

    /// Splits what was measured with a small and a large image, both in MiB, into what an update costs and
    /// what a MiB costs. The other fields are those of `large`. A share that comes out below zero, within
    /// what a measurement varies, counts as zero.
    struct Sample
    {
        double mebibytes = 0;
        double bytes = 0;
        double processorMs = 0;
    };
    static ServingCosts of(const Sample &small, const Sample &large);
};

/// How many updates there are, and how they come.
struct ServingLoad
{
    double updatesPerDay = 1e6;
    double imageMebibytes = 32;
    /// The busiest moment beside the mean of the day.
    double peakFactor = 4;
    /// The line of a user, which decides how long a download is under way.
    double userMegabits = 50;
    int models = 100;
    /// Images of each model that are asked for at the same time.
    int imagesPerModel = 2;
    int edges = 3;
};

/// What such a load needs, of all caching servers together.
struct ServingNeeds
{
    double meanUpdatesPerSecond = 0;
    double meanGigabits = 0;
    double meanRequestsPerSecond = 0;
    double meanProcessors = 0;
    double terabytesPerDay = 0;
    double downloadsAtPeak = 0;
    double memoryGibibytesAtPeak = 0;
    double cacheGibibytes = 0;
    /// What the origin hands out in all when each image is new: each byte once to each caching server.
    double originGibibytes = 0;
    double peakFactor = 1;

    static ServingNeeds of(const ServingCosts &costs, const ServingLoad &load);
    double peak(double mean) const { return mean * peakFactor; }
};

/// Updates a second at which a resource is used up.
struct ServingLimits
{
    double byLine = 0;
    double byProcessors = 0;

    static ServingLimits of(const ServingCosts &costs, double imageMebibytes, double gigabits,
                            double processors);
    bool isLineFirst() const { return byLine <= byProcessors; }
};
