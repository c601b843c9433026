#pragma once

#include <QWidget>

class LocalFileHost;

/// The flashing page. Paints a device that fills with blue as `JD` rises, and detects the hidden middle click
/// that switches to local-file mode. GUI thread.
class WidgetTab1 : public QWidget
{
    Q_OBJECT

public:
    /// Notifies `host` of the gesture. `host` is not owned and must outlive the page.
    WidgetTab1(QWidget *parent, LocalFileHost *host);

signals:
    /// Emitted with the progress of a run, 0.0 to 100.0. Intentional: nothing is connected to it, so the
    /// picture stays grey during a run.
    void sigSetPicJD(double value);

public slots:
    /// Sets the progress level. The next repaint shows it.
    void onSetPicJD(double value);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double JD = 0.0;
    LocalFileHost *m_host;
};
