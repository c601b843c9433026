#include "app/SslReport.h"

#include <QDebug>
#include <QSslSocket>

void writeSslReport()
{
    const bool supported = QSslSocket::supportsSsl();
    qDebug().noquote() << "QSslSocket=" << QSslSocket::sslLibraryBuildVersionString();
    qDebug().noquote() << supported << QSslSocket::sslLibraryBuildVersionString()
                       << QSslSocket::sslLibraryVersionString();
    if (supported)
        qDebug() << "SSL is supported!";
    else
        qCritical() << "SSL is not supported!";
}
