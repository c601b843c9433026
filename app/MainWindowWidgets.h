#pragma once

#include <array>

class CustomComboBox;
class CustomTabWidget;
class QCheckBox;
class QFrame;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class WidgetTab1;

/// The widgets of the main window, as the layout functions make them. Each belongs to the main
/// widget through the parent chain and lives as long as it; each has its name here as objectName.
struct MainWindowWidgets
{
    static constexpr int partitionCount = 5;

    CustomTabWidget *tabWidget = nullptr;
    WidgetTab1 *flashingPage = nullptr;

    QLabel *connectTypeLabel = nullptr;
    /// "USB" and "HID", as far as the write type allows them.
    CustomComboBox *writeTypeBox = nullptr;
    QFrame *divider = nullptr;
    QLabel *noticeLabel = nullptr;
    QCheckBox *partitionSelectBox = nullptr;
    QFrame *partitionSeparator = nullptr;
    /// spl, env, os, rodata, data; their objectNames are "partitionBox_" and that name.
    std::array<QCheckBox *, partitionCount> partitionBoxes{};
    /// The connection status: what the once-a-second look at the buses has found.
    QLabel *statusLabel = nullptr;
    QCheckBox *restartBox = nullptr;
    QCheckBox *iapBox = nullptr;

    QProgressBar *progressBar = nullptr;
    QLineEdit *firmwareFileEdit = nullptr;
    QPushButton *chooseFileButton = nullptr;
    QLabel *deviceModelLabel = nullptr;
    /// Nothing ever writes to it: it keeps its caption.
    QLabel *serverVersionLabel = nullptr;
    /// The status title: what the update is doing.
    QLabel *stateTitleLabel = nullptr;
    QCheckBox *logBox = nullptr;
    QPushButton *startButton = nullptr;

    /// Kept from one building step to a later one; the layouts own each other.
    QHBoxLayout *tabRow = nullptr;
    QHBoxLayout *noticeRow = nullptr;
};
