#pragma once

#include <QWidget>

/// The program's one top-level window: a fixed 800 x 490 ground on which the main widget lies.
///
/// Closing it is somebody else's decision: a close event is refused and reported. GUI thread.
class BackgroundWidget : public QWidget
{
    Q_OBJECT

public:
    /// `chineseLocale` is whether the system locale's country is China; it chooses the title.
    explicit BackgroundWidget(bool chineseLocale, QWidget *parent = nullptr);

    /// From now on every close is accepted, the one that is being asked about included.
    void allowClose() { m_closeAllowed = true; }

signals:
    /// The user (or the system) asks for the window to be closed. It stays open unless the receiver
    /// calls allowClose().
    void sigCloseAsked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    bool m_closeAllowed = false;
};
