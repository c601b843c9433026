#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <optional>

/// One run of a stand-in tool: either a script's steps, or an honest flasher or IAP programmer.
class StandinTool
{
public:
    explicit StandinTool(const QStringList &arguments);

    /// Both return the exit code. A script may also never return.
    int playSteps(const QJsonArray &steps);
    int playHonestTool();

private:
    int playFlasher();
    int playProgrammer();
    /// The exit code when the step ends the run.
    std::optional<int> playStep(const QJsonObject &step);
    /// Makes an empty file beside the tool.
    bool leaveFile(const QString &name) const;
    void print(const QByteArray &text) const;
    void printAsTold(const QByteArray &text, const QJsonObject &step) const;
    void printProgress() const;
    /// The microcontroller with the ids of the arguments, by its key; empty when it is not there.
    QString microcontroller() const;
    /// Hands the image to that microcontroller; says why not when it cannot.
    bool program() const;
    void printSuccess() const;
    /// Hands the image to the bootloader on the bus; says why not when it cannot.
    bool burn() const;

    QStringList m_arguments;
};
