#include "driver/DriverCheck.h"
#include "support/SystemCodec.h"
#include "support/process/LibrarySearch.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <cstdio>

// Installs the driver package beside the executable in the same way as the main program does at its start.
// The installer runs it with administrator rights, from a folder to which only administrators may write.

namespace {

class StandardOutputLog : public DriverLog
{
public:
    void showLine(const QString &line) override { std::puts(systemCodec().fromUnicode(line).constData()); }
    void logLine(const QString &line) override { showLine(line); }
};

} // namespace

int main(int argc, char *argv[])
{
    LibrarySearch::excludeWorkingFolder();
    const QCoreApplication application(argc, argv);
    StandardOutputLog log;
    DriverCheck::run(QCoreApplication::applicationDirPath(), log);
    std::fflush(stdout);
    return 0;
}
