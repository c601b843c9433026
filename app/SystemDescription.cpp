#include "app/SystemDescription.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSysInfo>

QString systemDescription()
{
    return QStringLiteral("%1 %2, %3 (%4), %5, %6")
        .arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion(),
             QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(), QLocale::system().name(),
             QCoreApplication::applicationDirPath());
}
