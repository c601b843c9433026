#include "support/log/PlainFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

bool PlainFile::openToAppend(QFile &file)
{
    // Checks the opened file, not the path: the path could be replaced between the check and the opening.
    const int descriptor = open(QFile::encodeName(file.fileName()).constData(),
                                O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        file.open(descriptor, QIODevice::Append | QIODevice::Text, QFileDevice::AutoCloseHandle))
        return true;
    close(descriptor);
    return false;
}
