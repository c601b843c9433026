#include "download/WriteAll.h"

#include <QFileDevice>

qint64 writeAll(QFileDevice &file, const char *data, qint64 size)
{
    qint64 written = 0;
    while (written < size) {
        const qint64 piece = file.write(data + written, size - written);
        if (piece <= 0)
            break;
        written += piece;
    }
    return written;
}
