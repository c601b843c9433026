#include "harness/probe/ProbeRequestHandler.h"

#include "harness/probe/ObjectLookup.h"
#include "harness/probe/Operate.h"
#include "harness/probe/Read.h"
#include "simulator/jsonlines/Answer.h"

#include <QWidget>

namespace {
constexpr int tickMs = 10;
}

ProbeRequestHandler::ProbeRequestHandler()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(tickMs);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        m_largestLateness = qMax(m_largestLateness, lateness());
        m_sinceTick->restart();
    });
}

QJsonObject ProbeRequestHandler::answer(const QJsonObject &request)
{
    const QString operation = request.value(QLatin1String("op")).toString();
    if (operation == QLatin1String("windows"))
        return Answer::success(Read::windows());
    if (operation == QLatin1String("tree"))
        return Answer::success(Read::tree());
    if (operation == QLatin1String("press"))
        return Operate::pressDialogButton(request.value(QLatin1String("button")).toString());
    if (operation == QLatin1String("screen"))
        return Operate::grabScreen(request.value(QLatin1String("path")).toString());
    if (operation == QLatin1String("timerLate"))
        return timerLate();

    const QString name = request.value(QLatin1String("object")).toString();
    QWidget *widget = ObjectLookup::find(name);
    if (!widget)
        return Answer::failure(QStringLiteral("no object ") + name);
    return answerFor(*widget, operation, request);
}

QJsonObject ProbeRequestHandler::answerFor(QWidget &widget, const QString &operation,
                                           const QJsonObject &request)
{
    if (operation == QLatin1String("read"))
        return Answer::success(Read::widget(widget));
    if (operation == QLatin1String("click"))
        return Operate::click(widget, request);
    if (operation == QLatin1String("check"))
        return Operate::check(widget, request);
    if (operation == QLatin1String("close"))
        return Operate::close(widget);
    if (operation == QLatin1String("move"))
        return Operate::move(widget, request);
    if (operation == QLatin1String("key"))
        return Operate::key(widget, request);
    if (operation == QLatin1String("set"))
        return Operate::setText(widget, request.value(QLatin1String("text")).toString());
    if (operation == QLatin1String("grab"))
        return Operate::grabWidget(widget, request.value(QLatin1String("path")).toString());
    return Answer::failure(QStringLiteral("no operation ") + operation);
}

qint64 ProbeRequestHandler::lateness() const
{
    return qMax<qint64>(0, m_sinceTick->elapsed() - tickMs);
}

QJsonObject ProbeRequestHandler::timerLate()
{
    // Started only when it is needed, because its ticks would wake an event loop that hangs.
    if (!m_timer.isActive()) {
        m_clock = std::make_unique<RunningClock>();
        m_sinceTick.emplace(*m_clock);
        m_timer.start();
    }
    // The request may arrive before the delayed tick, so the current wait counts, too.
    const qint64 late = qMax(m_largestLateness, lateness());
    m_largestLateness = 0;
    return Answer::success({{QLatin1String("ms"), late}});
}
