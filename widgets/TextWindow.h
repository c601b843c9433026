#pragma once

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QTextEdit;

/// The log window: one read-only text view that receives every log line. Closing it only hides it
/// and unticks the check box that shows it. GUI thread.
class TextWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TextWindow(QWidget *parent = nullptr);

    /// The main window's log check box; not owned, may be null.
    void setLogCheckBox(QCheckBox *checkBox);

    /// Appends `text` as a new paragraph to the pane, scrolls there, and appends it with the local
    /// time to "UPDLog.txt". The text is shown as it is, never read as markup.
    ///
    /// The pane forgets its oldest lines and the end of a very long one; the file keeps all. The first
    /// line that the file cannot take is followed by one in the pane that says so.
    void appendLog(const QString &text);

    /// The same for the pane only.
    void appendShown(const QString &text);

    QTextEdit *textView() const { return m_textView; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void appendToPane(const QString &text);
    void dropOldLines();
    void tellOnceThatTheFileIsMissing();

    QTextEdit *m_textView = nullptr;
    QPointer<QCheckBox> m_logCheckBox;
    bool m_hasLines = false;
    bool m_isFileMissingTold = false;
};
