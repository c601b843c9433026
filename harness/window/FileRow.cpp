#include "harness/window/FileRow.h"

#include "harness/process/Polling.h"
#include "harness/window/ProbeClient.h"

#include <QFileInfo>

namespace {

const QString dialog = QStringLiteral("Chose UpDate File.");
const QString nameEdit = QStringLiteral("fileNameEdit");
const QString row = QStringLiteral("firmwareFileEdit");
constexpr int limitMs = eventLimitMs;

} // namespace

QString FileRow::shownFolder(ProbeClient &probe)
{
    return probe.text(QStringLiteral("lookInCombo")).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

bool FileRow::enterFolder(ProbeClient &probe, const QString &path)
{
    // If the list of suggestions opens at that moment, it consumes the Return key.
    for (const int patienceMs : {2000, 2000, limitMs}) {
        if (!typeName(probe, path))
            return false;
        if (pollUntil([&] { return shownFolder(probe) == path; }, patienceMs, 20))
            return true;
    }
    return false;
}

bool FileRow::reveal(ProbeClient &probe)
{
    const QJsonObject strip{{QStringLiteral("x"), 730},
                            {QStringLiteral("y"), 310},
                            {QStringLiteral("button"), QStringLiteral("middle")}};
    return probe.click(QStringLiteral("flashingPage"), strip) && probe.waitForVisible(row, true, limitMs);
}

bool FileRow::openDialog(ProbeClient &probe)
{
    return probe.click(QStringLiteral("chooseFileButton")) && probe.waitForWindow(dialog, limitMs);
}

bool FileRow::typeName(ProbeClient &probe, const QString &name)
{
    return probe.type(nameEdit, name) && probe.waitForText(nameEdit, name, limitMs) &&
           probe.type(nameEdit, QString(), Qt::Key_Return);
}

bool FileRow::endDialog(ProbeClient &probe, const QString &button)
{
    // The list of suggestions consumes the first click.
    for (const int patienceMs : {1000, limitMs}) {
        if (!probe.pressDialogButton(button))
            return false;
        if (probe.waitForNoWindow(dialog, patienceMs))
            return true;
    }
    return false;
}

bool FileRow::choose(ProbeClient &probe, const QString &path)
{
    const QFileInfo file(path);
    return openDialog(probe) && enterFolder(probe, file.path()) && typeName(probe, file.fileName()) &&
           probe.waitForNoWindow(dialog, limitMs) && probe.waitForText(row, path, limitMs);
}
