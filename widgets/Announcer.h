#pragma once

#include <QObject>
#include <QString>

/// Has screen readers speak what changes in a window while the user is elsewhere in it: the window's labels
/// keep their role, since a reader speaks a label only when the user comes to it. What it announces is shown
/// to readers as a notification, which nobody sees. GUI thread only.
class Announcer : public QObject
{
    Q_OBJECT

public:
    /// `parent` is the window or widget that the announcements belong to.
    explicit Announcer(QWidget *parent);

    /// Announces `text` unless it says no more than the last one did.
    void announce(const QString &text);
    /// Returns what was announced last.
    QString lastText() const { return m_text; }

    /// Returns whether a user who heard `previous` learns something from `next`. A number that
    /// stands by itself is no news: the title of a download changes several times a second.
    static bool isNews(const QString &previous, const QString &next);

private:
    QString m_text;
};
