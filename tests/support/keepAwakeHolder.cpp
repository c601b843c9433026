#include "support/power/KeepAwake.h"

#include <QCoreApplication>

// Keeps the system awake until it is ended from outside.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const KeepAwake keepAwake(QStringLiteral("A program that is ended."), 0, {});
    return QCoreApplication::exec();
}
