#pragma once

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

/// The widgets of the IAP panel; each belongs to the panel and bears its name here, behind "iap",
/// as objectName.
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

    /// Makes the widgets and lays them out in `panel`, which gets a style sheet of its own.
    static IapForm build(QWidget *panel);
};
