#pragma once

#include <QString>

/// The measured costs of updates for one caching server.
struct ServingCosts
{
    /// Requests of one update: manifest, size, ten ranges, and repetitions.
    double requests = 0;
    /// Bytes on the line for one update without the image, and for each byte of the image.
    double fixedBytes = 0;
    double bytesPerByte = 0;
    /// Processor time of the server for one update without the image, and for each MiB of the image.
    double fixedProcessorMs = 0;
    double processorMsPerMebibyte = 0;
    /// Memory for one running download, in KiB.
    double kibibytesPerDownload = 0;

    /// The costs of one update with an image of a certain size.
    struct Sample
    {
        double mebibytes = 0;
        double bytes = 0;
        double processorMs = 0;
    };
    /// Splits the costs of updates with a small and a large image into fixed costs and costs per MiB. Costs
    /// that are computed as negative, because measurements vary, count as zero.
    static ServingCosts of(const Sample &small, const Sample &large);
};

/// The number of updates and how they are distributed.
struct ServingLoad
{
    double updatesPerDay = 1e6;
    double imageMebibytes = 32;
    /// The load of the busiest moment divided by the mean of the day.
    double peakFactor = 4;
    /// The speed of a user's line, which decides how long a download takes.
    double userMegabits = 50;
    int models = 100;
    /// Images of each model that are requested during the same time.
    int imagesPerModel = 2;
    int edges = 3;
};

/// The resources that such a load needs of all caching servers together.
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
    /// What the origin sends if every image is new: each byte once to each caching server.
    double originGibibytes = 0;
    double peakFactor = 1;

    static ServingNeeds of(const ServingCosts &costs, const ServingLoad &load);
    double peak(double mean) const { return mean * peakFactor; }
};

/// The updates per second at which a resource of one caching server is exhausted.
struct ServingLimits
{
    double byLine = 0;
    double byProcessors = 0;

    static ServingLimits of(const ServingCosts &costs, double imageMebibytes, double gigabits,
                            double processors);
    bool isLineFirst() const { return byLine <= byProcessors; }
};
