#include "harness/window/ProbeClient.h"

#include "harness/process/Polling.h"

#include <QFile>
#include <QJsonDocument>

namespace {

QString asText(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

quint16 portIn(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toUShort() : quint16(0);
}

QJsonObject onObject(const char *operation, const QString &object)
{
    return {{QLatin1String("op"), QLatin1String(operation)}, {QLatin1String("object"), object}};
}

QJsonObject toFile(QJsonObject request, const QString &path)
{
    request.insert(QLatin1String("path"), path);
    return request;
}

} // namespace

bool ProbeClient::connectThrough(const QString &portFile, int limitMs)
{
    quint16 port = 0;
    if (!pollUntil([&] { return (port = portIn(portFile)) != 0; }, limitMs)) {
        m_error = QStringLiteral("the program wrote no port to ") + portFile;
        return false;
    }
    if (m_client.connectTo(port, limitMs))
        return true;
    m_error = QStringLiteral("no connection to the probe's port %1").arg(port);
    return false;
}

QJsonObject ProbeClient::request(const QJsonObject &request)
{
    const QJsonObject answer = m_client.request(request, m_answerLimitMs);
    if (!answer.value(QLatin1String("ok")).toBool())
        m_error = asText(request) + QLatin1String(": ") + answer.value(QLatin1String("error")).toString();
    return answer;
}

QJsonObject ProbeClient::read(const QString &object)
{
    const QJsonObject answer = request(onObject("read", object));
    return answer.value(QLatin1String("ok")).toBool() ? answer : QJsonObject();
}

QString ProbeClient::text(const QString &object)
{
    return read(object).value(QLatin1String("text")).toString();
}

bool ProbeClient::isEnabled(const QString &object)
{
    return read(object).value(QLatin1String("enabled")).toBool();
}

bool ProbeClient::isVisible(const QString &object)
{
    return read(object).value(QLatin1String("visible")).toBool();
}

bool ProbeClient::isChecked(const QString &object)
{
    return read(object).value(QLatin1String("checked")).toBool();
}

QJsonArray ProbeClient::windows()
{
    return request({{QLatin1String("op"), QLatin1String("windows")}})
        .value(QLatin1String("windows"))
        .toArray();
}

QJsonObject ProbeClient::window(const QString &name)
{
    const QJsonArray all = windows();
    for (const QJsonValue &each : all) {
        const QJsonObject candidate = each.toObject();
        for (const char *field : {"title", "class", "objectName", "text"}) {
            if (candidate.value(QLatin1String(field)).toString() == name)
                return candidate;
        }
    }
    return {};
}

bool ProbeClient::operate(const QJsonObject &what)
{
    return request(what).value(QLatin1String("ok")).toBool();
}

bool ProbeClient::click(const QString &object, const QJsonObject &details)
{
    QJsonObject what = onObject("click", object);
    for (auto detail = details.begin(); detail != details.end(); ++detail)
        what.insert(detail.key(), detail.value());
    return operate(what);
}

bool ProbeClient::check(const QString &object, bool checked)
{
    QJsonObject what = onObject("check", object);
    what.insert(QLatin1String("checked"), checked);
    return operate(what);
}

bool ProbeClient::close(const QString &object)
{
    return operate(onObject("close", object));
}

bool ProbeClient::move(const QString &object, int x, int y)
{
    QJsonObject what = onObject("move", object);
    what.insert(QLatin1String("x"), x);
    what.insert(QLatin1String("y"), y);
    return operate(what);
}

bool ProbeClient::type(const QString &object, const QString &text, int finalKey)
{
    QJsonObject what = onObject("key", object);
    what.insert(QLatin1String("text"), text);
    if (finalKey)
        what.insert(QLatin1String("key"), finalKey);
    return operate(what);
}

bool ProbeClient::setText(const QString &object, const QString &text)
{
    QJsonObject what = onObject("set", object);
    what.insert(QLatin1String("text"), text);
    return operate(what);
}

bool ProbeClient::pressDialogButton(const QString &button)
{
    return operate({{QLatin1String("op"), QLatin1String("press")}, {QLatin1String("button"), button}});
}

bool ProbeClient::waitForFields(const QString &object, const std::function<bool(const QJsonObject &)> &holds,
                                int limitMs)
{
    QJsonObject seen;
    const auto condition = [&] {
        seen = read(object);
        return !seen.isEmpty() && holds(seen);
    };
    const auto conditionOrGone = [&] {
        return condition() || !isConnected();
    };
    if (pollUntil(conditionOrGone, limitMs, 20) && isConnected())
        return true;
    if (isConnected())
        m_error = seen.isEmpty() ? QStringLiteral("no object ") + object
                                 : object + QLatin1String(" was last ") + asText(seen);
    return false;
}

bool ProbeClient::waitForText(const QString &object, const QString &contained, int limitMs)
{
    return waitForFields(
        object,
        [&](const QJsonObject &seen) {
            return seen.value(QLatin1String("text")).toString().contains(contained);
        },
        limitMs);
}

bool ProbeClient::waitForWholeText(const QString &object, const QString &text, int limitMs)
{
    return waitForValue(object, QStringLiteral("text"), text, limitMs);
}

bool ProbeClient::waitForEnabled(const QString &object, bool enabled, int limitMs)
{
    return waitForValue(object, QStringLiteral("enabled"), enabled, limitMs);
}

bool ProbeClient::waitForVisible(const QString &object, bool visible, int limitMs)
{
    return waitForValue(object, QStringLiteral("visible"), visible, limitMs);
}

bool ProbeClient::waitForValue(const QString &object, const QString &field, const QJsonValue &value,
                               int limitMs)
{
    return waitForFields(
        object, [&](const QJsonObject &seen) { return seen.value(field) == value; }, limitMs);
}

bool ProbeClient::waitForWindow(const QString &name, int limitMs)
{
    const bool found =
        pollUntil([&] { return !window(name).isEmpty() || !isConnected(); }, limitMs, 20) && isConnected();
    if (!found && isConnected())
        m_error = QStringLiteral("no window ") + name + QLatin1String(" in ") +
                  asText({{QLatin1String("windows"), windows()}});
    return found;
}

bool ProbeClient::waitForNoWindow(const QString &name, int limitMs)
{
    const bool gone = pollUntil([&] { return window(name).isEmpty(); }, limitMs, 20);
    if (!gone)
        m_error = QStringLiteral("still there: window ") + name;
    return gone && isConnected();
}

bool ProbeClient::grab(const QString &object, const QString &pngPath)
{
    return operate(toFile(onObject("grab", object), pngPath));
}

bool ProbeClient::grabScreen(const QString &pngPath)
{
    return operate(toFile({{QLatin1String("op"), QLatin1String("screen")}}, pngPath));
}

int ProbeClient::timerLate()
{
    return request({{QLatin1String("op"), QLatin1String("timerLate")}}).value(QLatin1String("ms")).toInt(-1);
}
