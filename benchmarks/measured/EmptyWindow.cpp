#include <QApplication>
#include <QWidget>

/// What any program with a window of the product's size takes: the peer of its start and its memory.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(800, 490);
    window.show();
    return QApplication::exec();
}
