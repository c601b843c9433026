#pragma once

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

/// The widgets of the IAP panel, which owns them. Each objectName is the member's name after the prefix
/// "iap".
struct IapForm
{
    QComboBox *portType = nullptr;
    QComboBox *portName = nullptr;
    QComboBox *baudRate = nullptr;
    QLineEdit *address = nullptr;
    QLineEdit *appStartAddress = nullptr;
    QCheckBox *crcVerify = nullptr;
    QLabel *portNameLabel = nullptr;
    QPushButton *download = nullptr;

    /// Makes the widgets, lays them out in `panel` and sets the panel's style sheet.
    static IapForm build(QWidget *panel);
};
