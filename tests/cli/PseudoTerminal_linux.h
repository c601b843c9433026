#pragma once

#include <QByteArray>
#include <QString>

/// A terminal whose screen and keyboard belong to this process.
class PseudoTerminal
{
public:
    /// Makes a terminal with this many columns. isValid() returns whether that succeeded.
    explicit PseudoTerminal(int columns);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    bool isValid() const { return !m_device.isEmpty(); }
    /// Returns the device file that a program opens as its terminal.
    QString device() const { return m_device; }
    /// Returns everything that programs have written to it, with "\r\n" for each line feed. Does not wait.
    const QByteArray &screen();
    /// Types these keys.
    bool type(const QByteArray &keys);

private:
    int m_keyboard = -1;
    /// Held open, so that the terminal stays while no program uses it.
    int m_program = -1;
    QString m_device;
    QByteArray m_screen;
};
