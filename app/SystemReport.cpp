#include "app/SystemReport.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLocale>
#include <QSslSocket>
#include <QSysInfo>

bool SystemReport::isCountryChina()
{
    return QLocale::system().country() == QLocale::China;
}

QString SystemReport::describe()
{
    return QStringLiteral("%1 %2, %3 (%4), %5, %6")
        .arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion(),
             QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(), QLocale::system().name(),
             QCoreApplication::applicationDirPath());
}

void SystemReport::writeTlsVersions()
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
