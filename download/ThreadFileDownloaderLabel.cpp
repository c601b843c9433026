#include "download/ThreadFileDownloader.h"

#include <QLabel>

ThreadFileDownloader::ThreadFileDownloader(QObject *parentObject, QLabel *label, Clock &clock)
    : ThreadFileDownloader(clock)
{
    parentArg = parentObject;
    stateLabel = label;
    if (label)
        connect(this, &ThreadFileDownloader::setStateLabel, label, &QLabel::setText);
}
