#include "cli/output/JsonEvents.h"

#include "cli/output/DeviceStates.h"
#include "devices/UsbId.h"
#include "session/EventNames.h"

#include <QDateTime>
#include <QJsonDocument>

namespace {

constexpr int formatVersion = 1;

QJsonValue optionalNumber(const std::optional<qint64> &number)
{
    return number ? QJsonValue(*number) : QJsonValue();
}

} // namespace

JsonEvents::JsonEvents(const QString &version, Write write, Write writeSentence)
    : m_write(std::move(write)),
      m_writeSentence(std::move(writeSentence))
{
    this->write("hello", {{QStringLiteral("program"), QStringLiteral("quillmarsh-cli")},
                          {QStringLiteral("version"), version},
                          {QStringLiteral("format"), formatVersion}});
}

void JsonEvents::write(const char *event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), QLatin1String(event));
    object.insert(QStringLiteral("time"),
                  QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'")));
    m_write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void JsonEvents::device(const DeviceInfo &device)
{
    write("device", {{QStringLiteral("model"), device.model},
                     {QStringLiteral("vendorId"), UsbId::text(device.vendorId)},
                     {QStringLiteral("productId"), UsbId::text(device.productId)},
                     {QStringLiteral("position"), device.position},
                     {QStringLiteral("state"), DeviceStates::nameOf(device.state)},
                     {QStringLiteral("connected"), device.connected}});
}

void JsonEvents::stage(UpdateStage stage)
{
    write("stage", {{QStringLiteral("stage"), EventNames::of(stage)}});
}

void JsonEvents::progress(const UpdateProgress &progress)
{
    write("progress", {{QStringLiteral("percent"), progress.percent},
                       {QStringLiteral("bytes"), optionalNumber(progress.bytes)},
                       {QStringLiteral("total"), optionalNumber(progress.total)}});
}

void JsonEvents::log(const QString &line)
{
    write("log", {{QStringLiteral("line"), line}});
}

void JsonEvents::result(const UpdateSummary &summary)
{
    QJsonObject seconds;
    for (auto each = summary.seconds.cbegin(); each != summary.seconds.cend(); ++each)
        seconds.insert(EventNames::of(each.key()), each.value());
    write("result", {{QStringLiteral("outcome"), EventNames::of(summary.result.outcome)},
                     {QStringLiteral("stage"), EventNames::of(summary.result.stage)},
                     {QStringLiteral("reason"), EventNames::of(summary.result.reason)},
                     {QStringLiteral("exitCode"), static_cast<int>(summary.exitCode)},
                     {QStringLiteral("model"), summary.model},
                     {QStringLiteral("sum"), summary.sum},
                     {QStringLiteral("seconds"), seconds}});
}

void JsonEvents::finding(const Finding &finding)
{
    write("finding", {{QStringLiteral("what"), finding.what},
                      {QStringLiteral("verdict"), Findings::nameOf(finding.verdict)},
                      {QStringLiteral("text"), finding.text},
                      {QStringLiteral("remedy"), finding.remedy}});
}

void JsonEvents::report(const QString &path)
{
    write("report", {{QStringLiteral("path"), path}});
}

void JsonEvents::message(const QString &sentence)
{
    m_writeSentence(sentence.toUtf8() + '\n');
}
