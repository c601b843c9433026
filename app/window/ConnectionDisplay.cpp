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
