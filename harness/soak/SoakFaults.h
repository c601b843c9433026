#pragma once

#include "simulator/standin/StandinScript.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/// The ways in which a device of the soak run fails, or nearly does.
struct SoakFault
{
    const char *name;
    /// A fault of the server for this model's image or manifest entry; empty for none.
    const char *server;
    /// What the model's device does differently, as a bus description says it.
    QJsonObject device;
    /// What the flasher does when it is to write; empty for an honest one.
    QList<QJsonArray> flasher;
    /// How it has to end.
    const char *title;
    bool isBurned;
};

/// The faults in the order in which they come up.
inline QVector<SoakFault> soakFaults()
{
    using StandinScript::step;
    const char *const sumTitle = "CurrentStatus: MD5 verification failed.";
    const char *const failed = "CurrentStatus: Upgrade Failed!";
    const char *const successful = "CurrentStatus: Upgrade Successful";
    const auto onReport = [](const char *action) {
        return QJsonObject{
            {QStringLiteral("onReport"), QJsonObject{{QStringLiteral("action"), QLatin1String(action)}}}};
    };
    const auto writes = [](const char *answer) {
        return QJsonObject{
            {QStringLiteral("writes"), QJsonObject{{QStringLiteral("answer"), QLatin1String(answer)}}}};
    };
    const auto print = [](const char *text) {
        return step("print", QLatin1String(text));
    };
    return {
        {"wrong sum", "md5", {}, {}, sumTitle, false},
        {"not in the manifest", "absent", {}, {}, sumTitle, false},
        {"part never there", "416:path=I,range=5", {}, {}, sumTitle, false},
        {"part cut short", "short-206:path=I,range=5,bytes=5000", {}, {}, successful, true},
        {"part reset", "reset-after:path=I,range=5,bytes=5000", {}, {}, successful, true},
        {"busy server", "503:path=I,range=5,times=2", {}, {}, successful, true},
        {"no ranges", "ignore-range:path=I", {}, {}, successful, true},
        {"stays in its application", "", onReport("stay"), {}, failed, false},
        {"leaves for good", "", onReport("vanish"), {}, failed, false},
        {"refuses the report", "", writes("refused"), {}, failed, false},
        {"write error", "", writes("error"), {}, failed, false},
        {"flasher ends early", "", {}, {{print("half\n"), step("exit", 1)}}, failed, false},
        {"flasher crashes", "", {}, {{step("progress"), step("crash")}}, failed, false},
        {"flasher prints garbage", "", {}, {{step("garbage", 200000), step("exit", 1)}}, failed, false},
        {"flasher reaches it late",
         "",
         {},
         {{print("Open upg device failed\n"), step("exit", 1)},
          {print("Open upg device failed\n"), step("exit", 1)},
          {step("progress"), step("burn"), step("success")}},
         successful,
         true},
    };
}
