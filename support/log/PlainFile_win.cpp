#include "support/log/PlainFile.h"

#include <QFile>

bool PlainFile::openToAppend(QFile &file)
{
    // On Windows a folder cannot contain a pipe.
    return file.open(QIODevice::Append | QIODevice::Text);
}
