#pragma once

#include "update/ModelChooser.h"

#include <QMap>
#include <QString>
#include <QWidget>

class Reporter;

/// A window that asks for the model of a device that already waits in its bootloader, with one button for
/// each model of the firmware manifest. Lives on the GUI thread.
class ChosefirmwareWidget : public QWidget, public ModelChooser
{
    Q_OBJECT

public:
    /// Downloads the manifest in a local event loop without a time limit, which ends early only if the
    /// program shuts down. The list stays empty if the server does not answer or the manifest is malformed. A
    /// manifest that is too large is reported to `reporter`, which is used only in the constructor.
    explicit ChosefirmwareWidget(const QString &manifestUrl, QWidget *parent = nullptr,
                                 Reporter *reporter = nullptr);

    /// Returns the text of the button that was pressed; empty until then.
    QString chosenName() const { return m_chosenName; }

    /// Shows the window and blocks the calling thread, which must not be the GUI thread, until the user picks
    /// a model, closes the window, or the program shuts down. Returns the chosen name or an empty string.
    QString waitForChoice() override;

signals:
    /// Shows (false) or hides (true) the window. Also emitted with true when the user has picked a model or
    /// closed the window.
    void sigSetHide(bool close);

private slots:
    void onSetHide(bool close);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void fetchModels(const QString &manifestUrl, Reporter *reporter);
    void buildList();
    void pick(const QString &name);

    QString m_chosenName;
    QMap<QString, QString> m_models;
};
