#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

/// Draws a ring around the control that has the keyboard focus, in every window but dialogs, which show it
/// themselves. It appears with the first key that moves or uses the focus and goes with the next press of the
/// mouse, so a user who only points sees nothing of it. Make one, on the GUI thread, after the application.
class FocusRing : public QObject
{
public:
    FocusRing();
    ~FocusRing() override;

    /// Returns whether the ring is drawn around `widget` at the moment.
    bool isAround(const QWidget *widget) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setKeyboardUsed(bool used);
    void follow();

    QPointer<QFocusFrame> m_frame;
    bool m_keyboardUsed = false;
};
