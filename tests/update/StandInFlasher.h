#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A shell script that plays a flasher. It records each run's arguments, one line a run, before it
/// does what it was told to.
class StandInFlasher
{
public:
    /// `body` is what the script does after that; `$run` is the number of the run, from 1.
    void write(const QString &name, const QByteArray &body)
    {
        QFile file(program(name));
        file.open(QIODevice::WriteOnly);
        const QByteArray log = '"' + m_folder.filePath(QStringLiteral("runs")).toUtf8() + '"';
        file.write("#!/bin/sh\nprintf '%s' \"" + name.toUtf8() + "\" >> " + log +
                   "\nfor argument in \"$@\"; do printf '|%s' \"$argument\"; done >> " + log + "\necho >> " +
                   log + "\nrun=$(wc -l < " + log + ")\n" + body + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// Script text that waits for letGoOn(): what comes before it is read by itself.
    QByteArray pause() const
    {
        return "; while [ ! -e '" + program(QStringLiteral("go on")).toUtf8() + "' ]; do sleep 0.02; done; ";
    }
    void letGoOn() const { QFile(program(QStringLiteral("go on"))).open(QIODevice::WriteOnly); }

    QString program(const QString &name) const { return m_folder.filePath(name); }
    QString folder() const { return m_folder.path(); }

    /// "name|argument|argument" of every run so far.
    QStringList runs() const
    {
        QFile file(m_folder.filePath(QStringLiteral("runs")));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_folder;
};
