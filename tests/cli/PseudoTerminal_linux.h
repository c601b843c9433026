#pragma once

#include <QByteArray>
#include <QString>

/// A terminal whose screen and keyboard are in this process.
class PseudoTerminal
{
public:
    /// The terminal has this many columns; isValid() tells whether there is one.
    explicit PseudoTerminal(int columns);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    bool isValid() const { return !m_device.isEmpty(); }
    /// Returns the device file that a program opens as its terminal.
    QString device() const { return m_device; }
    /// Returns everything that was written to it so far, with "\r\n" for each line feed. Does not wait.
    const QByteArray &screen();
    /// Types these keys.
    bool type(const QByteArray &keys);

private:
    int m_keyboard = -1;
    /// Held open, so that there is a terminal between two programs.
    int m_program = -1;
    QString m_device;
    QByteArray m_screen;
};
