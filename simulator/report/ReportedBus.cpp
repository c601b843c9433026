#include "simulator/report/ReportedBus.h"

#include "simulator/bus/JsonReader.h"
#include "simulator/report/ReportedDevices.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr int longestControlList = 1024 * 1024;

const QLatin1String formatName("quillmarsh-report");
constexpr int formatVersion = 1;

QString problemOfFormat(const QJsonObject &report)
{
    if (report.value(QLatin1String("format")).toString() != formatName)
        return QStringLiteral("it is no report of quillmarsh");
    const QJsonValue version = report.value(QLatin1String("formatVersion"));
    if (version.toDouble() > formatVersion)
        return QStringLiteral("its format %1 is newer than the format %2 that is known here")
            .arg(version.toDouble())
            .arg(formatVersion);
    return version.toDouble() == formatVersion ? QString()
                                               : QStringLiteral("it names no version of its format");
}

void readSurroundings(const QJsonObject &report, ReportedBus &reported, QString *error)
{
    // Further members of these are for people.
    JsonReader locale(report.value(QLatin1String("locale")).toObject(), QStringLiteral("locale"), error);
    reported.isChinese = locale.text("language", QString()) == QLatin1String("zh");
    const QJsonObject list =
        report.value(QLatin1String("files")).toObject().value(QLatin1String("controlList")).toObject();
    const QJsonValue text = list.value(QLatin1String("text"));
    if (text.isString())
        reported.controlList = text.toString().toUtf8();
    if (reported.controlList && reported.controlList->size() > longestControlList)
        JsonReader(list, QStringLiteral("files.controlList"), error)
            .fail(QStringLiteral("the text is longer than any control list"));
}

void readBus(const QJsonObject &report, ReportedBus &reported, QString *error)
{
    if (!report.value(QLatin1String("bus")).isObject()) {
        *error = QStringLiteral("it has no \"bus\"");
        return;
    }
    JsonReader reader(report, QStringLiteral("report"), error);
    JsonReader bus = reader.object("bus");
    // What a library returned; the lists tell the rest.
    bus.number("usbCount", 0, -1000, 100000);
    bus.number("otherHid", 0, 0, 100000);
    bus.object("decision");
    ReportedDevices devices(error);
    for (const JsonReader &entry : bus.objects("usb"))
        devices.addUsb(entry);
    for (const JsonReader &entry : bus.objects("hid"))
        devices.addHid(entry);
    bus.rejectUnknownKeys();
    if (!error->isEmpty())
        return;
    reported.bus = devices.take();
    reported.model = devices.firstModel();
    if (error->isEmpty())
        *error = reported.bus.complete();
}

} // namespace

std::optional<ReportedBus> ReportedBus::parse(const QByteArray &json, QString *error)
{
    QString problem;
    ReportedBus reported;
    if (json.size() > maximumBytes) {
        problem =
            QStringLiteral("it has more than %1 MiB, which no report has").arg(maximumBytes / 1024 / 1024);
    } else {
        QJsonParseError syntax{};
        const QJsonDocument document = QJsonDocument::fromJson(json, &syntax);
        if (syntax.error != QJsonParseError::NoError)
            problem = QStringLiteral("it is damaged or cut, no JSON: %1 at byte %2 of %3")
                          .arg(syntax.errorString())
                          .arg(syntax.offset)
                          .arg(json.size());
        else
            problem = problemOfFormat(document.object());
        if (problem.isEmpty())
            readSurroundings(document.object(), reported, &problem);
        if (problem.isEmpty())
            readBus(document.object(), reported, &problem);
    }
    if (error)
        *error = problem;
    return problem.isEmpty() ? std::optional<ReportedBus>(reported) : std::nullopt;
}

std::optional<ReportedBus> ReportedBus::read(const QString &path, QString *error)
{
    QFile file(path);
    QString problem;
    std::optional<ReportedBus> reported;
    // Opening a named pipe would block.
    if (!QFileInfo(path).isFile())
        problem = QStringLiteral("there is no such file");
    else if (!file.open(QIODevice::ReadOnly))
        problem = file.errorString();
    else
        reported = parse(file.read(maximumBytes + 1), &problem);
    if (error && !reported)
        *error = QStringLiteral("the report %1 cannot be used: %2").arg(path, problem);
    return reported;
}
