#include "app/ProgramArguments.h"

#include <QCoreApplication>

ProgramArguments::ProgramArguments(int /*argc*/, char * /*argv*/[])
{
    // What main() has went through the system's code page, which loses what it does not know.
    const QStringList arguments = QCoreApplication::arguments();
    for (const QString &each : arguments)
        m_utf8.push_back(each.toUtf8());
}
