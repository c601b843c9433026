#pragma once

#include "harness/process/BoundProcess.h"
#include "harness/process/ChildProcess.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <functional>

/// A desktop session of one's own as far as screen readers need it: a message bus, the accessibility bus, a
/// window manager on the given display, which hands out the focus, and a reader that hears what the program
/// says. Programs that are started with addTo()'s variables are heard. The destructor ends all of it.
class ScreenReaderSession
{
public:
    ~ScreenReaderSession();

    bool start(const QString &display);
    /// Adds what makes a program speak to this screen reader.
    void addTo(const std::function<void(const QString &name, const QString &value)> &setVariable) const;

    /// Returns every object of the program `name` as a reader finds it, parents before children: "name",
    /// "role", "states", "labels" (the names of its labels), "description", "value", "window".
    QJsonArray objects(const QString &name);
    /// Returns what was heard so far, oldest first: "type", "role", "name", "value".
    QJsonArray heard();
    /// Presses keys as a person does, such as "Tab", "space" or "alt+Down".
    bool press(const QStringList &keys);

    QString errorText() const { return m_error; }

private:
    QJsonObject ask(const QJsonObject &question);
    bool fail(const QString &what);

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    ChildProcess m_bus;
    ChildProcess m_launcher;
    ChildProcess m_windowManager;
    BoundProcess m_reader;
    QString m_error;
};
