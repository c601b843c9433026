#pragma once

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QTextEdit;

/// The log window: a read-only text view of all log lines. Closing it hides it and unticks the check box that
/// shows it. GUI thread.
class TextWindow : public QWidget
{
    Q_OBJECT

public:
    explicit TextWindow(QWidget *parent = nullptr);

    /// Sets the check box that shows this window; not owned, may be null.
    void setLogCheckBox(QCheckBox *checkBox);

    /// Appends `text` as a new paragraph to the pane, scrolls to it, and appends it with the local time to
    /// "UPDLog.txt". The text is plain, never markup.
    ///
    /// The pane drops its oldest lines and cuts very long ones; the file keeps everything. Warns once in the
    /// pane if the file cannot be written.
    void appendLog(const QString &text);

    /// Like appendLog(), but for the pane only.
    void appendToPane(const QString &text);

    QTextEdit *textView() const { return m_textView; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void insertParagraph(const QString &text);
    void dropOldLines();
    void warnOnceAboutLogFile();

    QTextEdit *m_textView = nullptr;
    QPointer<QCheckBox> m_logCheckBox;
    bool m_hasLines = false;
    bool m_fileProblemReported = false;
};
