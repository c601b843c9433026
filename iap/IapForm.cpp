#include "iap/IapForm.h"

#include "iap/IapPortType.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

// Without its own style sheet the panel inherits the main window's, which paints disabled and enabled fields
// alike.
const char *const styleSheet = R"(
* { background-color: rgb(240,240,240); color: black; }
QLineEdit, QComboBox, QComboBox QAbstractItemView { background-color: white; }
QLineEdit:disabled { background-color: rgb(228,228,228); }
*:disabled { color: rgb(140,140,140); }
)";

template <typename Widget>
Widget *make(const char *objectName)
{
    auto *widget = new Widget;
    widget->setObjectName(QLatin1String(objectName));
    return widget;
}

QHBoxLayout *buttonRow(QPushButton *button)
{
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(button);
    return row;
}

} // namespace

IapForm IapForm::build(QWidget *panel)
{
    IapForm form;
    form.portType = make<QComboBox>("iapPortType");
    form.portType->addItems(IapPortType::names());
    form.portName = make<QComboBox>("iapPortName");
    form.portName->addItem(QString());
    form.baudRate = make<QComboBox>("iapBaudRate");
    form.baudRate->addItem(QStringLiteral("115200"));
    form.address = make<QLineEdit>("iapAddress");
    form.appStartAddress = make<QLineEdit>("iapAppStartAddress");
    form.appStartAddress->setText(QStringLiteral("08004000"));
    form.crcVerify = make<QCheckBox>("iapCrcVerify");
    form.portNameLabel = make<QLabel>("iapPortNameLabel");
    form.portNameLabel->setText(QStringLiteral("Port Name: "));
    form.download = make<QPushButton>("iapDownload");
    form.download->setText(QStringLiteral("Download"));

    auto *layout = new QFormLayout(panel);
    form.portNameLabel->setBuddy(form.portName);
    layout->addRow(QStringLiteral("Port Type: "), form.portType);
    layout->addRow(form.portNameLabel, form.portName);
    layout->addRow(QStringLiteral("Baud Rate: "), form.baudRate);
    layout->addRow(QStringLiteral("Address(0x): "), form.address);
    layout->addRow(QStringLiteral("App Start Address(0x): "), form.appStartAddress);
    layout->addRow(QStringLiteral("CRC Verify after download: "), form.crcVerify);
    layout->addRow(buttonRow(form.download));
    panel->setStyleSheet(QLatin1String(styleSheet));
    return form;
}
