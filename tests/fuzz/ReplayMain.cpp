// Runs a fuzzer with all files of a folder as inputs; fails if there are none.

#include "tests/fuzz/Fuzz.h"

#include <QDir>
#include <QFile>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER\n", argv[0]);
        return 2;
    }
    const QFileInfoList inputs = QDir(QString::fromLocal8Bit(argv[1])).entryInfoList(QDir::Files);
    for (const QFileInfo &input : inputs) {
        QFile file(input.filePath());
        if (!file.open(QIODevice::ReadOnly))
            return 2;
        const QByteArray bytes = file.readAll();
        std::fprintf(stderr, "%s\n", qPrintable(input.fileName()));
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                               static_cast<std::size_t>(bytes.size()));
    }
    return inputs.isEmpty() ? 1 : 0;
}
