#include "support/PlainFile.h"

#include <QFile>

bool PlainFile::openToAppend(QFile &file)
{
    // Folders hold no pipes here.
    return file.open(QIODevice::Append | QIODevice::Text);
}
