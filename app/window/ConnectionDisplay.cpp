#include "app/window/ConnectionDisplay.h"

#include "app/window/MainWindowTexts.h"

#include <QLabel>

void showConnection(const MonitorOutcome &outcome, const MainWindowWidgets &widgets)
{
    const ConnectionStatus status = statusOf(outcome.state);
    widgets.statusLabel->setStyleSheet(QString::fromUtf8(status.styleSheet));
    widgets.statusLabel->setText(MainWindowTexts::translated(status.text));
    if (outcome.setDeviceModel)
        widgets.deviceModelLabel->setText(MainWindowTexts::translated(MainWindowTexts::connectedModel) +
                                          outcome.device.name);
}

QString connectionInWords(const MonitorOutcome &outcome)
{
    const QString status = MainWindowTexts::translated(statusOf(outcome.state).text);
    return outcome.setDeviceModel && !outcome.device.name.isEmpty()
               ? status + QLatin1String(", ") + outcome.device.name
               : status;
}
