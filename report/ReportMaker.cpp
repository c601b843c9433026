#include "report/ReportMaker.h"

#include "checks/SystemCheck.h"
#include "devices/ControlledDeviceList.h"
#include "devices/DeviceLibraries.h"
#include "report/BusReport.h"
#include "report/FileFacts.h"
#include "report/LogTail.h"
#include "report/Redaction.h"
#include "report/ReportText.h"
#include "report/SystemFacts.h"
#include "support/process/ShutdownFlag.h"
#include "update/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QLocale>
#include <QStorageInfo>
#include <QSysInfo>

namespace {

QJsonObject versions()
{
    return {{QStringLiteral("program"), QCoreApplication::applicationName()},
            {QStringLiteral("version"), QCoreApplication::applicationVersion()},
            {QStringLiteral("qt"), QLatin1String(qVersion())},
            {QStringLiteral("libusb"), DeviceLibraries::usbVersion()},
            {QStringLiteral("hidapi"), DeviceLibraries::hidVersion()},
            {QStringLiteral("system"), QSysInfo::prettyProductName()},
            {QStringLiteral("kernel"), QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion()},
            {QStringLiteral("architecture"), QSysInfo::currentCpuArchitecture()}};
}

QJsonObject locale(const QString &language)
{
    return {{QStringLiteral("name"), QLocale::system().name()}, {QStringLiteral("language"), language}};
}

/// Longer control lists are left out of the report; a real one has a few kilobytes.
constexpr int maximumControlListBytes = 256 * 1024;

QJsonValue controlListText(const std::optional<QByteArray> &contents)
{
    if (!contents || contents->size() > maximumControlListBytes)
        return {};
    return QString::fromUtf8(contents->constData(), contents->size());
}

QJsonObject filesBeside(const ToolFiles &tools, const std::optional<QByteArray> &controlList)
{
    QJsonArray facts;
    for (const QString &tool : {tools.usbFlasher, tools.hidFlasher, tools.iapProgrammer})
        facts.append(FileFacts::of(tool));
    const QString folder = QCoreApplication::applicationDirPath() + QLatin1Char('/');
    for (const char *name : {"dpscat.exe", "Artinchip_SoC.inf", "Artinchip_SoC.cat", "amd64/libusb0.dll",
                             "amd64/libusbK.dll", "amd64/WdfCoInstaller01009.dll", "amd64/libusbK.sys"})
        facts.append(FileFacts::of(folder + QLatin1String(name)));
    return {
        {QStringLiteral("folder"), QCoreApplication::applicationDirPath()},
        {QStringLiteral("tools"), facts},
        {QStringLiteral("controlList"),
         QJsonObject{{QStringLiteral("path"), tools.controlList},
                     {QStringLiteral("size"), controlList ? QJsonValue(controlList->size()) : QJsonValue()},
                     {QStringLiteral("text"), controlListText(controlList)}}}};
}

QJsonObject temporaryFolder(const QString &path)
{
    const bool exists = QFileInfo(path).isDir();
    const QString existingFolder = exists ? path : QDir::tempPath();
    return {{QStringLiteral("path"), path},
            {QStringLiteral("exists"), exists},
            {QStringLiteral("problem"), TemporaryFolder::reasonNotToWriteIn(existingFolder)},
            {QStringLiteral("freeBytes"), QStorageInfo(existingFolder).bytesAvailable()},
            {QStringLiteral("entries"), exists ? FileFacts::contentsOf(path) : QJsonArray()}};
}

QJsonArray checks(const ReportMaker::Source &source)
{
    const QString folder =
        QFileInfo(source.temporaryFolder).isDir() ? source.temporaryFolder : QDir::tempPath();
    SystemCheck check({source.usb, source.lock, source.tools, folder});
    QJsonArray findings;
    for (const Finding &finding : check.run({})) {
        findings.append(QJsonObject{{QStringLiteral("what"), finding.what},
                                    {QStringLiteral("verdict"), Findings::nameOf(finding.verdict)},
                                    {QStringLiteral("text"), finding.text},
                                    {QStringLiteral("remedy"), finding.remedy}});
    }
    return findings;
}

QJsonObject logObject(const QString &path, const LogTail::Tail &tail)
{
    return {{QStringLiteral("path"), path},
            {QStringLiteral("size"), tail.size < 0 ? QJsonValue() : QJsonValue(tail.size)},
            {QStringLiteral("lines"), QJsonArray::fromStringList(tail.lines)}};
}

QJsonValue lastRun(const ReportMaker::Source &source, const LogTail::Tail &log)
{
    const std::optional<LastRun> run = source.lastRun ? source.lastRun : LastRun::fromLog(log.lines);
    return run ? run->toJson() : QJsonValue();
}

} // namespace

QByteArray ReportMaker::make(const Source &source)
{
    const BusInventory::IsWanted isWanted = BusReport::wantedVendors();
    const std::optional<QByteArray> controlList = ControlledDeviceList::readWhole(source.tools.controlList);
    const BusInventory inventory = BusInventory::read(source.usbReady, source.hid, isWanted);
    const LogTail::Tail log = LogTail::read(source.logFile);

    QJsonObject content{
        {QStringLiteral("made"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
        {QStringLiteral("program"), versions()},
        {QStringLiteral("locale"), locale(source.language)},
        {QStringLiteral("rights"), SystemFacts::rights()},
        {QStringLiteral("files"), filesBeside(source.tools, controlList)},
        {QStringLiteral("temporaryFolder"), temporaryFolder(source.temporaryFolder)},
        {QStringLiteral("deviceAccess"), SystemFacts::deviceAccess(isWanted)},
        {QStringLiteral("log"), logObject(source.logFile, log)},
        {QStringLiteral("lastRun"), lastRun(source, log)},
        {QStringLiteral("checks"), checks(source)},
    };
    if (ShutdownFlag::instance().isRaised())
        return {};
    const Redaction redaction(SystemFacts::homeFolders(), SystemFacts::userNames(),
                              SystemFacts::caseSensitivityOfNames());
    return ReportText::of(redaction.apply(QJsonValue(content)).toObject(),
                          BusReport::of(inventory, controlList));
}
