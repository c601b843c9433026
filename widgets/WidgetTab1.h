#pragma once

#include <QWidget>

class LocalFileHost;

/// The flashing page: paints a device that fills with blue as `JD` rises, and watches for the
/// hidden middle click that switches to local-file mode. GUI thread.
class WidgetTab1 : public QWidget
{
    Q_OBJECT

public:
    /// `host` is told about the gesture; it is not owned and must outlive the page.
    WidgetTab1(QWidget *parent, LocalFileHost *host);

signals:
    /// The progress of a run, 0.0 to 100.0. Nothing is connected to it: the picture stays grey
    /// however far a run proceeds, and is meant to.
    void sigSetPicJD(double value);

public slots:
    /// Takes `value` as the progress level; it shows at the next repaint.
    void onSetPicJD(double value);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double JD = 0.0;
    LocalFileHost *m_host;
};
