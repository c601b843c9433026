#include "app/ConnectionDisplay.h"

#include "app/MainWindowTexts.h"
#include "support/LanguageUtilities.h"

#include <QLabel>
#include <QPushButton>

void showConnection(const MonitorOutcome &outcome, const MainWindowWidgets &widgets)
{
    const ConnectionStatus status = statusOf(outcome.state);
    widgets.statusLabel->setStyleSheet(QString::fromUtf8(status.styleSheet));
    widgets.statusLabel->setText(LanguageUtilities::instance().lookup(status.text));
    if (outcome.setDeviceModel)
        widgets.deviceModelLabel->setText(MainWindowTexts::shown(MainWindowTexts::connectedModel) +
                                          outcome.device.name);
    if (outcome.pressStart)
        widgets.startButton->click();
}
