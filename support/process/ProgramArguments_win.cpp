#include "support/process/ProgramArguments.h"

#include <QCoreApplication>

ProgramArguments::ProgramArguments(int /*argc*/, char * /*argv*/[])
{
    // main()'s arguments are in the system's code page, which cannot represent every character.
    const QStringList arguments = QCoreApplication::arguments();
    for (const QString &each : arguments)
        m_utf8.push_back(each.toUtf8());
}
