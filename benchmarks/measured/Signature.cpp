// Verifies the signature of a file like an update. Arguments: FILE SIGNATURE KEY. Prints "valid" or why the
// file is refused.

#include "signature/ImageVerifier.h"

#include <QFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 4)
        return 2;
    QFile signature(QString::fromLocal8Bit(argv[2]));
    if (!signature.open(QIODevice::ReadOnly))
        return 2;
    const QString model = QStringLiteral("DevMaa");
    const ImageVerifier::Result result =
        ImageVerifier({QString::fromLatin1(argv[3])})
            .verifyImage(QString::fromLocal8Bit(argv[1]), signature.readAll(), model, Clock::real());
    const bool isValid = result.verdict == SignatureVerdict::Valid;
    std::puts(isValid ? "valid" : reasonToRefuse(result, model).toUtf8().constData());
    return isValid ? 0 : 1;
}
