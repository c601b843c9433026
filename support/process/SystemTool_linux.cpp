#include "support/process/SystemTool.h"

QString SystemTool::path(const QString &name)
{
    const QString folder = folderForTests();
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}
