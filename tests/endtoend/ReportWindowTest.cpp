#include "tests/endtoend/EndToEnd.h"

#include "simulator/files/WholeFile.h"
#include "tests/report/ReportValidation.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

namespace {

using namespace EndToEnd;

const QString menu = QStringLiteral("logMenu");
const QString dialog = QStringLiteral("reportDialog");
const QString box = QStringLiteral("reportBox");
const QString nameEdit = QStringLiteral("fileNameEdit");

/// "Save report…" in the context menu of the log window.
class ReportWindowTest : public EndToEndTest
{
protected:
    /// Chooses it, and a file of this name in the dialog that opens.
    bool saveReportAs(const QString &path)
    {
        ProbeClient &probe = scenario().probe;
        const QJsonObject right{{QStringLiteral("button"), QStringLiteral("right")}};
        if (!probe.check(QStringLiteral("logBox")) ||
            !probe.waitForVisible(QStringLiteral("logTextView"), true) ||
            !probe.click(QStringLiteral("logTextView"), right) || !probe.waitForWindow(menu))
            return false;
        // It is the last entry of the menu.
        return probe.type(menu, QString(), Qt::Key_Up) && probe.type(menu, QString(), Qt::Key_Return) &&
               probe.waitForWindow(dialog) && nameFile(path);
    }

    QString textOfBox()
    {
        if (!scenario().probe.waitForWindow(box, updateLimitMs))
            return scenario().probe.errorText();
        return scenario().probe.window(box).value(QLatin1String("text")).toString();
    }

    int looks() const
    {
        return m_scenario->program.standardError().count(QStringLiteral("Device List Count:"));
    }

    QString fileNamed(const char *name) { return scenario().program.workingFolder() + QLatin1String(name); }

    QJsonObject reportIn(const QString &path)
    {
        return QJsonDocument::fromJson(WholeFile::read(path)).object();
    }

private:
    bool nameFile(const QString &path)
    {
        ProbeClient &probe = scenario().probe;
        // The list of suggestions takes the Return for itself when it opens just then.
        for (const int patienceMs : {2000, 2000, eventLimitMs}) {
            if (!probe.setText(nameEdit, path) || !probe.type(nameEdit, QString(), Qt::Key_Return))
                return probe.window(dialog).isEmpty();
            if (probe.waitForNoWindow(dialog, patienceMs))
                return true;
        }
        return false;
    }
};

TEST_F(ReportWindowTest, TellsOfTheUpdateThatThisWindowRan)
{
    UpdateScenario &s = scenario();
    ASSERT_EQ(update(), upgradeSuccessful);
    ASSERT_TRUE(waitUntilRestarted());
    const QString path = fileNamed("/a report.json");
    ASSERT_TRUE(saveReportAs(s.program.toProgramPath(path))) << s.probe.errorText().toStdString();
    const QString said = textOfBox();
    EXPECT_TRUE(said.contains(QLatin1String("a report.json"))) << said.toStdString();
    EXPECT_TRUE(said.contains(QLatin1String("Nothing was sent anywhere."))) << said.toStdString();
    EXPECT_EQ(ReportValidation::problemsIn(path), QString());

    const QJsonObject report = reportIn(path);
    const QJsonObject run = report.value(QLatin1String("lastRun")).toObject();
    EXPECT_EQ(run.value(QLatin1String("source")).toString(), QStringLiteral("program"));
    EXPECT_EQ(run.value(QLatin1String("outcome")).toString(), QStringLiteral("succeeded"));
    const QJsonObject seconds = run.value(QLatin1String("seconds")).toObject();
    EXPECT_EQ(seconds.keys(), (QStringList{QStringLiteral("entering-bootloader"), QStringLiteral("fetching"),
                                           QStringLiteral("flashing"), QStringLiteral("resetting")}));
    const QJsonObject decision =
        report.value(QLatin1String("bus")).toObject().value(QLatin1String("decision")).toObject();
    EXPECT_EQ(decision.value(QLatin1String("state")).toString(), QStringLiteral("device"));
    EXPECT_EQ(decision.value(QLatin1String("model")).toString(), s.model());
    EXPECT_EQ(report.value(QLatin1String("program")).toObject().value(QLatin1String("program")).toString(),
              QStringLiteral("quillmarsh"));
    const QJsonArray lines =
        report.value(QLatin1String("log")).toObject().value(QLatin1String("lines")).toArray();
    EXPECT_TRUE(lines.contains(QJsonValue(s.program.updateLog().split(QLatin1Char('\n')).value(3))));
    EXPECT_EQ(s.closeWindow(), 0);
}

TEST_F(ReportWindowTest, TheWindowStaysAliveWhileTheServerDoesNotAnswer)
{
    UpdateScenario &s = scenario();
    s.serverFaults = QStringList{QStringLiteral("stall:path=*firmware-version*")};
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, detected));
    const QString path = fileNamed("/report.json");
    ASSERT_TRUE(saveReportAs(s.program.toProgramPath(path))) << s.probe.errorText().toStdString();
    const int before = looks();
    // Each look lists the bus twice; a window that hangs looks no more.
    EXPECT_TRUE(pollUntil([&] { return looks() >= before + 6; }, eventLimitMs, 50));
    EXPECT_FALSE(QFile::exists(path)) << "the server has ten seconds";
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    EXPECT_TRUE(textOfBox().contains(QLatin1String("report.json")));
    EXPECT_EQ(ReportValidation::problemsIn(path), QString());
    EXPECT_EQ(s.closeWindow(), 0);
}

TEST_F(ReportWindowTest, LeavingDoesNotWaitForTheReport)
{
    UpdateScenario &s = scenario();
    s.serverFaults = QStringList{QStringLiteral("stall:path=*firmware-version*")};
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, detected));
    const QString path = fileNamed("/report.json");
    ASSERT_TRUE(saveReportAs(s.program.toProgramPath(path))) << s.probe.errorText().toStdString();
    EXPECT_EQ(s.closeWindow(), 0);
    EXPECT_FALSE(s.program.standardError().contains(QStringLiteral("The process is ended by force")));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(QDir(s.program.workingFolder()).entryList({QStringLiteral("report*")}), QStringList());
}

} // namespace
