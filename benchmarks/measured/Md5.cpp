#include "update/md5Check.h"

#include <QFile>

#include <cstdio>

/// Prints the MD5 of the file of argument 1, taken as an update takes it.
int main(int argc, char *argv[])
{
    const QString sum = argc > 1 ? md5Check::fileMd5(QFile::decodeName(argv[1])) : QString();
    std::puts(qUtf8Printable(sum));
    return sum.isEmpty() ? 1 : 0;
}
