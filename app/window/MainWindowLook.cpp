#include "app/window/MainWindowLook.h"

#include <QApplication>
#include <QDebug>
#include <QFont>
#include <QIcon>
#include <QWidget>

void MainWindowLook::prepareQt()
{
    // Nothing needs the graphics card, and loading its driver takes half of the start-up time.
    QApplication::setAttribute(Qt::AA_ForceRasterWidgets);
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

void MainWindowLook::placeBelow(const QWidget &mainWidget, QWidget &window)
{
    const QPoint position = mainWidget.mapToGlobal(QPoint(0, 0));
    qDebug() << "Window position on screen:" << position;
    window.move(position.x(), position.y() + mainWidget.height());
    window.hide();
}
