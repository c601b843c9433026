#include <QApplication>
#include <QDebug>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QSslSocket>

/// An empty program with a window of the product's size: the peer for start and memory. With an argument it
/// also has what every program of this kind needs: a text, a button, a report of the TLS versions, and
/// network access.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setFixedSize(800, 490);
    if (argc > 1) {
        new QLabel(QStringLiteral("A text"), &window);
        new QPushButton(QStringLiteral("A button"), &window);
        qDebug() << QSslSocket::sslLibraryBuildVersionString() << QSslSocket::supportsSsl()
                 << QSslSocket::sslLibraryVersionString();
        new QNetworkAccessManager(&window);
    }
    window.show();
    return QApplication::exec();
}
