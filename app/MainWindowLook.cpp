#include "app/MainWindowLook.h"

#include <QApplication>
#include <QFont>
#include <QIcon>

void MainWindowLook::prepareScaling()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void MainWindowLook::applyProgramFont(bool chinese)
{
    QFont font = QApplication::font();
    font.setPixelSize(chinese ? 12 : 11);
    QApplication::setFont(font);
}

void MainWindowLook::applyProgramIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/images/quillmarsh-%1.png").arg(size));
    QApplication::setWindowIcon(icon);
}
