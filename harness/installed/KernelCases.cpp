#include "harness/installed/KernelCases.h"

#include "harness/installed/KernelRun.h"
#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "simulator/standin/StandinScript.h"

#include <QFile>
#include <QProcess>

namespace {

using StandinScript::step;
using Place = KernelCases::Place;
using Check = std::function<QString()>;

const QString simple = QStringLiteral("DevMaa");
const QString duo = QStringLiteral("DevMah");
const QString successful = QStringLiteral("CurrentStatus: Upgrade Successful");
const QString failed = QStringLiteral("CurrentStatus: Upgrade Failed!");
const QString flasherScript = QStringLiteral("upgcmd.exe.script.json");
const QString rules = QStringLiteral("/etc/udev/rules.d/60-quillmarsh.rules");
const QString packagedRules = QStringLiteral("/usr/lib/udev/rules.d/60-quillmarsh.rules");

/// Plays the checks until one has a complaint.
QString inTurn(const std::vector<Check> &checks)
{
    for (const Check &check : checks) {
        if (const QString problem = check(); !problem.isEmpty())
            return problem;
    }
    return {};
}

QJsonObject foreignDevice()
{
    return {{QStringLiteral("key"), QStringLiteral("foreign")},
            {QStringLiteral("application"),
             QJsonObject{{QStringLiteral("vendorId"), 0x1209}, {QStringLiteral("productId"), 1}}}};
}

QString updateInWindow(const Place &place, const QString &model, const QList<QJsonObject> &others = {})
{
    KernelRun run(place, others + QList<QJsonObject>{ModelOnBus::application(model)});
    return inTurn({[&] { return run.startBus(); }, [&] { return run.startWindow(); },
                   [&] { return run.pressStart(model); }, [&] { return run.waitForTitle(successful); },
                   [&] { return run.checkUpdated(model); },
                   [&] {
                       return run.closeWindow();
                   }});
}

QString updateInTerminal(const Place &place, const QString &model, const QList<QJsonObject> &others = {})
{
    KernelRun run(place, others + QList<QJsonObject>{ModelOnBus::application(model)});
    return inTurn({[&] { return run.startBus(); },
                   [&] {
                       return run.startCli({QStringLiteral("update"), QStringLiteral("--yes"),
                                            QStringLiteral("--json"), QStringLiteral("--wait"),
                                            QStringLiteral("60")});
                   },
                   [&] { return run.waitForExitCode(0); },
                   [&] {
                       return run.checkUpdated(model);
                   }});
}

/// A flasher that tells when it begins and burns when it is told to.
class WaitingFlasher
{
public:
    explicit WaitingFlasher(const Place &place) : m_folder(place.stage + QLatin1String("/tools/"))
    {
        remove();
        const QJsonArray run{step("leave", QStringLiteral("burning")),
                             step("awaitFile", QStringLiteral("go")), step("burn")};
        WholeFile::write(m_folder + flasherScript,
                         StandinScript::scriptFor(QStringLiteral("image"), {run}).toJson());
    }
    ~WaitingFlasher() { remove(); }
    WaitingFlasher(const WaitingFlasher &) = delete;
    WaitingFlasher &operator=(const WaitingFlasher &) = delete;

    QString waitUntilBurning() const
    {
        return pollUntil([this] { return QFile::exists(m_folder + QLatin1String("burning")); },
                         KernelRun::limitMs, 50)
                   ? QString()
                   : QStringLiteral("the flasher was not started");
    }
    QString goOn() const
    {
        return WholeFile::write(m_folder + QLatin1String("go"), "go") ? QString()
                                                                      : QStringLiteral("cannot write");
    }

private:
    void remove() const
    {
        for (const QString &name : {QStringLiteral("burning"), QStringLiteral("go"), flasherScript})
            QFile::remove(m_folder + name);
    }

    QString m_folder;
};

QString unplugDuringBurn(const Place &place, const std::function<QString(KernelRun &)> &begin,
                         const std::function<QString(KernelRun &)> &end)
{
    const WaitingFlasher flasher(place);
    KernelRun run(place, {ModelOnBus::application(simple)});
    return inTurn({[&] { return run.startBus(); }, [&] { return begin(run); },
                   [&] { return flasher.waitUntilBurning(); },
                   [&] { return run.bus.unplug(simple) ? QString() : run.bus.errorText(); },
                   [&] { return flasher.goOn(); }, [&] { return end(run); },
                   [&] {
                       return run.bus.device(simple).value(QLatin1String("burns")).toInt() == 0
                                  ? QString()
                                  : QStringLiteral("a device that was gone was burned");
                   }});
}

/// Takes the rules away from udev as long as it lives.
class WithoutRules
{
public:
    WithoutRules()
    {
        for (const QString &file : {rules, packagedRules})
            QFile::rename(file, file + QLatin1String(".away"));
        reload();
    }
    ~WithoutRules()
    {
        for (const QString &file : {rules, packagedRules})
            QFile::rename(file + QLatin1String(".away"), file);
        reload();
    }
    WithoutRules(const WithoutRules &) = delete;
    WithoutRules &operator=(const WithoutRules &) = delete;

private:
    static void reload()
    {
        QProcess::execute(QStringLiteral("udevadm"), {QStringLiteral("control"), QStringLiteral("--reload")});
    }
};

QString refusedInWindow(const Place &place)
{
    const WithoutRules without;
    KernelRun run(place, {ModelOnBus::application(simple)});
    const QString pane = QStringLiteral("logTextView");
    return inTurn({[&] { return run.startBus(); }, [&] { return run.startWindow(); },
                   [&] {
                       return run.probe.waitForText(pane, QStringLiteral("60-quillmarsh.rules"),
                                                    KernelRun::limitMs)
                                  ? QString()
                                  : run.probe.errorText();
                   },
                   [&] {
                       return run.closeWindow();
                   }});
}

QString refusedInTerminal(const Place &place)
{
    const WithoutRules without;
    KernelRun run(place, {ModelOnBus::application(simple)});
    QString problem = run.startBus();
    if (!problem.isEmpty())
        return problem;
    const auto check = [&] {
        problem = run.startCli({QStringLiteral("check")});
        if (!problem.isEmpty())
            return true;
        run.bus.waitForExit(KernelRun::limitMs);
        const QString said = QString::fromUtf8(WholeFile::read(run.inStage("stdout")));
        if (!said.contains(QLatin1String("60-quillmarsh.rules")))
            problem = QStringLiteral("it did not name the rules:\n") + said;
        return problem.isEmpty();
    };
    // Unlike "update --wait", it looks once, and the kernel takes a moment to find a new device.
    pollUntil(check, KernelRun::limitMs, 1000);
    return problem;
}

} // namespace

std::vector<KernelCases::Case> KernelCases::all() const
{
    const Place place = m_place;
    const auto startUpdate = [](KernelRun &run) {
        return run.startCli({QStringLiteral("update"), QStringLiteral("--yes"), QStringLiteral("--json"),
                             QStringLiteral("--wait"), QStringLiteral("60")});
    };
    return {
        {QStringLiteral("window: an update"),
         [=] {
             return updateInWindow(place, simple);
         }},
        {QStringLiteral("window: a device with two interfaces"),
         [=] {
             return updateInWindow(place, duo);
         }},
        {QStringLiteral("window: a foreign device beside it"),
         [=] {
             return updateInWindow(place, simple, {foreignDevice()});
         }},
        {QStringLiteral("window: unplugged during the burn"),
         [=] {
             return unplugDuringBurn(
                 place,
                 [](KernelRun &run) {
                     const QString problem = run.startWindow();
                     return problem.isEmpty() ? run.pressStart(simple) : problem;
                 },
                 [](KernelRun &run) { return run.waitForTitle(failed); });
         }},
        {QStringLiteral("window: a device that may not be opened"),
         [=] {
             return refusedInWindow(place);
         }},
        {QStringLiteral("terminal: an update"),
         [=] {
             return updateInTerminal(place, simple);
         }},
        {QStringLiteral("terminal: a device with two interfaces"),
         [=] {
             return updateInTerminal(place, duo);
         }},
        {QStringLiteral("terminal: a foreign device beside it"),
         [=] {
             return updateInTerminal(place, simple, {foreignDevice()});
         }},
        {QStringLiteral("terminal: unplugged during the burn"),
         [=] {
             return unplugDuringBurn(place, startUpdate,
                                     [](KernelRun &run) { return run.waitForExitCode(1); });
         }},
        {QStringLiteral("terminal: a device that may not be opened"),
         [=] {
             return refusedInTerminal(place);
         }},
    };
}
