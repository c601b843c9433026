#include "driver/DriverSequence.h"

#include "driver/DriverPackage.h"
#include "driver/LoadedDrivers.h"
#include "support/SystemCodec.h"
#include "support/process/ShutdownFlag.h"

#include <QDebug>
#include <QTextCodec>
#include <QTextDecoder>

#include <memory>

namespace {

class Sequence
{
public:
    Sequence(DriverSystem &system, DriverLog &log) : m_system(system), m_log(log) {}

    void run(const QString &applicationDir)
    {
        m_log.showLine(QStringLiteral("Check Driver Running State..."));
        const bool isRunning = DriverPackage::isLibusbK(listLoadedDrivers(m_system));
        log("Try Create Cat And Inf...");
        log(createCatalog(applicationDir), "Try Create Cat And Inf Success", "Try Create Cat And Inf Faild!");
        if (isShuttingDown())
            return;
        log("Try Install Inf...");
        installInf(DriverPackage::infPath(applicationDir));
        if (isShuttingDown())
            return;
        if (isRunning)
            m_log.showLine(QStringLiteral("driver libusbK Is Running"));
        else
            installAndStart();
    }

private:
    /// Returns whether the user has closed the window, which is possible while a tool runs. From then on
    /// nothing in the system may be changed.
    static bool isShuttingDown() { return ShutdownFlag::instance().isRaised(); }

    void log(const char *line) { m_log.logLine(QString::fromLatin1(line)); }
    void log(bool success, const char *successLine, const char *failureLine)
    {
        log(success ? successLine : failureLine);
    }

    bool createCatalog(const QString &folder)
    {
        const QString catalog = DriverPackage::catalogPath(folder);
        m_system.remove(catalog);
        if (isShuttingDown())
            return false;
        m_system.runTool(DriverPackage::catalogToolPath(folder), DriverPackage::catalogToolArguments(folder),
                         {});
        return m_system.exists(catalog);
    }

    void installInf(const QString &inf)
    {
        // Stateful decoders: a character may be split between two pieces of output.
        const std::unique_ptr<QTextDecoder> output(systemCodec().makeDecoder());
        const std::unique_ptr<QTextDecoder> errors(QTextCodec::codecForName("UTF-8")->makeDecoder());
        ToolListener listener;
        listener.standardOutput = [this, &output](const QByteArray &piece) {
            logOutput("Standard Output:", QString(), output->toUnicode(piece));
        };
        listener.standardError = [this, &errors](const QByteArray &piece) {
            logOutput("Standard Error:", QStringLiteral("ERR: "), errors->toUnicode(piece));
        };
        const ToolRun run =
            m_system.runTool(DriverPackage::infTool(), DriverPackage::infToolArguments(inf), listener);
        if (run.end == ToolRun::Finished)
            qDebug() << "Process finished!";
        else
            qDebug() << "Error occurred while executing the command!";
    }

    void logOutput(const char *stream, const QString &prefix, const QString &text)
    {
        // Empty while the decoder waits for the rest of a split character.
        if (text.isEmpty())
            return;
        qDebug().noquote() << stream << text;
        m_log.logLine(prefix + text);
    }

    void installAndStart()
    {
        m_log.showLine(QStringLiteral("driver libusbK Is Not Running!"));
        m_log.showLine(QStringLiteral("Try To Start Driver..."));
        const QString folder = m_system.applicationFolder();
        qDebug().noquote() << "当前进程所在文件夹路径:" << folder;
        const DriverPackage::SystemFolders folders = DriverPackage::systemFolders(windowsFolder());
        qDebug().noquote() << "System32 Path:" << folders.system32;
        qDebug().noquote() << "Drivers Path:" << folders.drivers;
        copyFiles(DriverPackage::copies(folder, folders));
        if (isShuttingDown())
            return;
        copyInf(DriverPackage::infPath(folder));
        if (isShuttingDown())
            return;
        log("Install Dev...");
        log(m_system.createService(DriverPackage::serviceBinary(folders), DriverPackage::serviceName()),
            "Install Dev Success", "Install Dev Failed!");
        if (isShuttingDown())
            return;
        log("Start Dev...");
        log(m_system.startService(DriverPackage::serviceName()), "Start Dev Success", "Start Dev Failed!");
    }

    QString windowsFolder()
    {
        QString folder = m_system.environmentVariable(QStringLiteral("WINDIR"));
        if (folder.isEmpty()) {
            qWarning() << "无法找到 Windows 目录";
            log("cannot find Windows DIR");
        }
        return folder;
    }

    void copyFiles(const QVector<DriverPackage::Copy> &copies)
    {
        for (int i = 0; i < copies.size() && !isShuttingDown(); ++i) {
            const DriverPackage::Copy &copy = copies.at(i);
            if (m_system.exists(copy.destination))
                continue;
            const QString number = QString::number(i + 1);
            m_log.logLine(QStringLiteral("Begin Copy %1!").arg(number));
            m_log.logLine(m_system.copy(copy.source, copy.destination)
                              ? QStringLiteral("Copy Success %1").arg(number)
                              : QStringLiteral("Mov File ERROR%1!").arg(number));
        }
    }

    void copyInf(const QString &inf)
    {
        log("Install DriverINFO...");
        const DriverSystem::InfCopy copy = m_system.copyOemInf(inf);
        if (copy.succeeded)
            qDebug() << "Driver installed successfully!";
        else
            qDebug().noquote() << "Failed to install driver. Error: " << copy.errorCode;
        m_log.logLine(QStringLiteral("devINFORET RET: %1").arg(copy.errorCode));
    }

    DriverSystem &m_system;
    DriverLog &m_log;
};

} // namespace

void runDriverSequence(const QString &applicationDir, DriverSystem &system, DriverLog &log)
{
    Sequence(system, log).run(applicationDir);
}
