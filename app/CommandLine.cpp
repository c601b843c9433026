#include "app/CommandLine.h"

#include <QMessageBox>

#include <cstdlib>

LaunchOptions parseArguments(int argc, const char *const argv[])
{
    LaunchOptions options;
    if (argc < 2)
        return options;
    const QString mode = QString::fromUtf8(argv[1]);
    options.isZN58Mode = mode == QLatin1String("ZN58UpDate");
    options.isTessilonixMode = mode == QLatin1String("TessilonixUpDate");
    if (options.isTessilonixMode && argc > 2)
        options.wantedModelName = QString::fromUtf8(argv[2]);
    return options;
}

LaunchOptions parseCommandLine(int argc, const char *const argv[])
{
    LaunchOptions options = parseArguments(argc, argv);
    if (options.isTessilonixMode && options.wantedModelName.isEmpty()) {
        // Intentional: an error in an information box, as the companion programs' manuals show it.
        QMessageBox::information(nullptr, QStringLiteral("Error"), QStringLiteral("TessilonixDev isNull.!"),
                                 QMessageBox::Ok);
        std::exit(0);
    }
    return options;
}
