#include "app/SystemCountry.h"

#include <QLocale>

bool isSystemCountryChina()
{
    return QLocale::system().country() == QLocale::China;
}
