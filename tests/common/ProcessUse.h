#pragma once

#include <QtGlobal>

/// The system resources that a process uses.
struct ProcessUse
{
    /// The number of open descriptors or handles.
    int descriptors = 0;
    int threads = 0;
    /// The current and the peak memory.
    int residentKilobytes = 0;
    int peakKilobytes = 0;

    /// Returns the resources of the process `id`, by default of this one. All values are 0 if there is no
    /// such process.
    static ProcessUse of(qint64 id = 0);

    /// Returns whether the memory is meaningful. With a sanitizer it is not, because freed memory is kept for
    /// a while.
    static constexpr bool memoryTells()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }
};
