#pragma once

#include <QtGlobal>

/// What a process holds of the system's resources, as the system tells it.
struct ProcessUse
{
    /// Open files and the like.
    int descriptors = 0;
    int threads = 0;
    /// Memory that it holds now, and the most that it ever held.
    int residentKilobytes = 0;
    int peakKilobytes = 0;

    /// Of the process `id`, by default of this one. All 0 when there is none.
    static ProcessUse of(qint64 id = 0);

    /// Memory in a build with a sanitizer says nothing: what was freed is kept for a while.
    static constexpr bool memoryTells()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }
};
