#pragma once

#include "tests/endtoend/CloseTest.h"
#include "tests/endtoend/PersonsFiles.h"

/// A device with a microcontroller, and the panel that programs it through the stand-in programmer.
class IapTest : public CloseTest
{
protected:
    const QString programmer = QStringLiteral("IAP_Programmer.exe");
    const QString panel = QStringLiteral("iapPanel");
    const QString download = QStringLiteral("iapDownload");
    const QString iapBox = QStringLiteral("iapBox");
    const QString upgradeSuccessful = QStringLiteral("Current Status: Upgrade Successful");
    const QString upgradeFailed = QStringLiteral("Current Status: Upgrade Failed!");
    const char *const asked = "IAP RunProcessGetData: ";
    const char *const handedOver = "IAP Dev - Run IAPUpDate Mode!";
    const char *const enabledAgain = "enable IAPbtnStart_";

    /// Prepares the model's device, and a programmer that plays this script when it is started.
    UpdateScenario &iapScenario(const QList<QJsonArray> &starts = {})
    {
        UpdateScenario &s = scenario("DevMdq");
        if (!starts.isEmpty())
            s.program.setScript(programmer, EndToEnd::scriptFor(QStringLiteral("Start"), starts));
        return s;
    }

    int linesBeginning(const char *text) const
    {
        const QStringList lines = m_scenario->program.updateLogLines();
        return static_cast<int>(std::count_if(lines.begin(), lines.end(), [text](const QString &line) {
            return line.startsWith(QLatin1String(text));
        }));
    }

    /// Starts the program and waits until the device is detected and the programmer was asked for its ports,
    /// so that a start takes effect at once.
    void startAndDetect()
    {
        start();
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.probe.waitForWholeText(EndToEnd::connection, QStringLiteral("IAP Device Detected")))
            << s.probe.errorText().toStdString();
        ASSERT_TRUE(pollUntil([&] { return linesBeginning(asked) >= 2; }, eventLimitMs, 20));
    }
    void startAndPressStart()
    {
        startAndDetect();
        ASSERT_TRUE(scenario().pressStart()) << scenario().errorText().toStdString();
    }
    /// Returns the title after the panel has enabled the controls again.
    QString titleOfRun(int runsSoFar = 1)
    {
        UpdateScenario &s = scenario();
        if (!pollUntil(
                [&] { return s.program.updateLogLines().count(QLatin1String(enabledAgain)) >= runsSoFar; },
                EndToEnd::updateLimitMs, 20))
            return QStringLiteral("the run has no end");
        return s.probe.waitForEnabled(EndToEnd::startButton, true) ? s.probe.text(EndToEnd::title)
                                                                   : s.probe.errorText();
    }
    bool waitForProgress(int percent)
    {
        return scenario().probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), percent,
                                             EndToEnd::updateLimitMs);
    }

    /// Returns the path that the program sees.
    QString downloadedImage()
    {
        const StagedProgram &program = scenario().program;
        return program.toProgramPath(program.temporaryFolder()) +
               QStringLiteral("/QuillmarshV3TmpPath/tmp/dev.bin");
    }
    /// Returns the programmer's runs whose first argument is `first`.
    QList<QStringList> runsOf(const char *first)
    {
        QList<QStringList> found;
        for (const QStringList &arguments : EndToEnd::argumentsOf(scenario().program, programmer)) {
            if (arguments.value(0) == QLatin1String(first))
                found.append(arguments);
        }
        return found;
    }

    /// Returns the model's "vendorId" or "productId", which the maker fills in.
    int idOfModel(const char *name)
    {
        const QJsonObject ids = scenario().devices.first().value(QLatin1String("application")).toObject();
        return ids.value(QLatin1String(name)).toInt();
    }
    /// Returns vendor and product id in the form of the programmer's arguments.
    QStringList idsInHex()
    {
        return {QString::number(idOfModel("vendorId"), 16), QString::number(idOfModel("productId"), 16)};
    }

    /// Creates the file m_file and chooses it as a user does.
    void chooseFile(const QString &name, const QByteArray &contents)
    {
        UpdateScenario &s = scenario();
        m_file = EndToEnd::makeFolder(s, "firmware") + QLatin1Char('/') + name;
        ASSERT_TRUE(WholeFile::write(m_file, contents));
        ASSERT_TRUE(FileRow::reveal(s.probe));
        ASSERT_TRUE(FileRow::choose(s.probe, s.program.toProgramPath(m_file)))
            << s.probe.errorText().toStdString();
    }

    QString m_file;
};
