#pragma once

#include "update/ModelChooser.h"

#include <QMap>
#include <QString>
#include <QWidget>

class Reporter;

/// Asks which model a device is that already waits in its bootloader: one button for each model of
/// the firmware manifest. Lives on the GUI thread.
class ChosefirmwareWidget : public QWidget, public ModelChooser
{
    Q_OBJECT

public:
    /// Fetches the manifest before it returns, in a local event loop without a time limit; only the
    /// program's leaving ends it early. A server that does not answer, or a bad manifest, leaves the
    /// list empty. `reporter`, used only in here, is told of a manifest that is too large.
    explicit ChosefirmwareWidget(const QString &manifestUrl, QWidget *parent = nullptr,
                                 Reporter *reporter = nullptr);

    /// Text of the button that was pressed; empty until then.
    QString chosenName() const { return m_chosenName; }

    /// Shows the window and blocks the calling thread, which must not be the GUI thread, until the
    /// user picks a model, closes the window, or the program leaves. Returns the pick, or nothing.
    QString waitForChoice() override;

signals:
    /// False shows the window, true hides it. True is also how a pick or a close is announced.
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
