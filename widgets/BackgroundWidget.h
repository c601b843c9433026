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

    /// Closes the window without asking anybody; from then on every close is accepted.
    void closeForGood();

signals:
    /// The user (or the system) asked for the window to be closed; it is still open.
    void sigCloseAsked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    bool m_closeAllowed = false;
};
