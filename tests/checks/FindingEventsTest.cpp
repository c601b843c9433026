#include "checks/Finding.h"
#include "cli/output/JsonEvents.h"
#include "cli/output/TextEvents.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

const Finding missing = Findings::problem(QStringLiteral("usb-flasher"), QStringLiteral("It is missing."),
                                          QStringLiteral("Copy it."));

TEST(FindingEventsTest, WithJsonAFindingIsAnEvent)
{
    QByteArray lines;
    JsonEvents events(QStringLiteral("1"), [&](const QByteArray &line) { lines = line; }, {});
    events.finding(missing);
    QJsonObject event = QJsonDocument::fromJson(lines).object();
    event.remove(QStringLiteral("time"));
    EXPECT_EQ(event, (QJsonObject{{QStringLiteral("event"), QStringLiteral("finding")},
                                  {QStringLiteral("what"), QStringLiteral("usb-flasher")},
                                  {QStringLiteral("verdict"), QStringLiteral("problem")},
                                  {QStringLiteral("text"), QStringLiteral("It is missing.")},
                                  {QStringLiteral("remedy"), QStringLiteral("Copy it.")}}));
}

TEST(FindingEventsTest, AsTextAFindingIsOneLine)
{
    QByteArray text;
    TextEvents events({}, [&](const QByteArray &bytes) { text += bytes; });
    events.finding(missing);
    events.finding(Findings::ok(QStringLiteral("tls"), QStringLiteral("There.")));
    EXPECT_EQ(text, QByteArray("problem  usb-flasher: It is missing. Copy it.\n"
                               "ok       tls: There.\n"));
}

TEST(FindingEventsTest, OnlyAProblemChangesTheExitCode)
{
    const Finding ok = Findings::ok(QStringLiteral("a"), QStringLiteral("b"));
    const Finding warning = Findings::warning(QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_EQ(exitCodeOf({}, ExitCode::NotPrepared), ExitCode::Done);
    EXPECT_EQ(exitCodeOf({ok, warning}, ExitCode::NotPrepared), ExitCode::Done);
    EXPECT_EQ(exitCodeOf({missing, ok}, ExitCode::NotPrepared), ExitCode::NotPrepared);
    EXPECT_EQ(exitCodeOf({ok, missing}, ExitCode::FirmwareUnusable), ExitCode::FirmwareUnusable);
}

} // namespace
