#pragma once

#include <QWidget>

/// The program's main window, 800 x 490 pixels, which contains the main widget. Refuses a close event and
/// emits a signal instead, until closing is allowed. GUI thread.
class BackgroundWidget : public QWidget
{
    Q_OBJECT

public:
    /// `chineseLocale` says whether the system locale's country is China. It selects the title.
    explicit BackgroundWidget(bool chineseLocale, QWidget *parent = nullptr);

    /// Accepts every close from now on. May be called from a receiver of sigCloseAsked().
    void allowClose() { m_closeAllowed = true; }

signals:
    /// Emitted when the user or the system wants to close the window. It stays open unless a receiver calls
    /// allowClose().
    void sigCloseAsked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    bool m_closeAllowed = false;
};
