#pragma once

#include <QString>

/// What a process holds at a moment in which it has nothing to do.
struct Use
{
    int handles = 0;
    int threads = 0;
    qint64 kibibytes = 0;
    /// Files below its temporary folder.
    int files = 0;
    /// Lines in its log pane; 0 without one.
    int lines = 0;

    static Use of(qint64 processId, const QString &temporaryFolder);
};
