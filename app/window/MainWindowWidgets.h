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

/// The main window's widgets, made by the layout functions. The main widget owns all of them through the
/// parent chain. The objectName of each is its member's name.
struct MainWindowWidgets
{
    static constexpr int partitionCount = 5;

    CustomTabWidget *tabWidget = nullptr;
    WidgetTab1 *flashingPage = nullptr;

    QLabel *connectTypeLabel = nullptr;
    /// Offers "USB" and "HID" as far as the control list allows them.
    CustomComboBox *writeTypeBox = nullptr;
    QFrame *divider = nullptr;
    QLabel *noticeLabel = nullptr;
    QCheckBox *partitionSelectBox = nullptr;
    QFrame *partitionSeparator = nullptr;
    /// spl, env, os, rodata, data; their objectNames are "partitionBox_" and that name.
    std::array<QCheckBox *, partitionCount> partitionBoxes{};
    /// The connection status, updated by every monitor tick.
    QLabel *statusLabel = nullptr;
    QCheckBox *restartBox = nullptr;
    QCheckBox *iapBox = nullptr;

    QProgressBar *progressBar = nullptr;
    QLineEdit *firmwareFileEdit = nullptr;
    QPushButton *chooseFileButton = nullptr;
    QLabel *deviceModelLabel = nullptr;
    /// Intentional: keeps its caption, nothing writes to it.
    QLabel *serverVersionLabel = nullptr;
    /// The status title, which says what the update is doing.
    QLabel *stateTitleLabel = nullptr;
    QCheckBox *logBox = nullptr;
    QPushButton *startButton = nullptr;

    /// Kept for later building steps; each is owned by its parent layout.
    QHBoxLayout *tabRow = nullptr;
    QHBoxLayout *noticeRow = nullptr;
};
