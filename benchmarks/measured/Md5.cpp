#include "update/md5Check.h"

#include <QFile>

#include <cstdio>

/// Prints the MD5 sum of the file in argument 1, computed with the function that updates use.
int main(int argc, char *argv[])
{
    const QString sum = argc > 1 ? md5Check::fileMd5(QFile::decodeName(argv[1])) : QString();
    std::puts(qUtf8Printable(sum));
    return sum.isEmpty() ? 1 : 0;
}
