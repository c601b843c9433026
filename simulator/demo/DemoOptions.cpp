#include "simulator/demo/DemoOptions.h"

#include <QCommandLineParser>
#include <QTextStream>

#include <cstdlib>

DemoOptions DemoOptions::read(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Updates a simulated device with the real program."));
    parser.addHelpOption();
    const QCommandLineOption automatic(
        QStringLiteral("auto"), QStringLiteral("Press Start and end by itself, on a display of its own."));
    const QCommandLineOption language(QStringLiteral("lang"),
                                      QStringLiteral("Language of the window: en or zh."),
                                      QStringLiteral("language"), QStringLiteral("en"));
    const QCommandLineOption pictures(QStringLiteral("pictures"), QStringLiteral("Folder for the pictures."),
                                      QStringLiteral("folder"), QStringLiteral("."));
    parser.addOptions({automatic, language, pictures});
    parser.process(arguments);

    DemoOptions options;
    const QString code = parser.value(language);
    if (code == QLatin1String("zh")) {
        options.locale = QStringLiteral("zh_CN.UTF-8");
    } else if (code != QLatin1String("en")) {
        QTextStream(stderr) << "--lang takes en or zh, not " << code << '\n';
        std::exit(2);
    }
    options.automatic = parser.isSet(automatic) || qEnvironmentVariableIsEmpty("DISPLAY");
    options.pictures = parser.value(pictures);
    return options;
}
