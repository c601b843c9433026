#include "widgets/TextWindow.h"

#include "support/SpokenText.h"
#include "support/log/LogFile.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QTextBlock>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

// Dropping line by line (setMaximumBlockCount) lays the pane out again for each new line. With this slack it
// happens once in two thousand lines.
constexpr int maximumLines = 22000;
constexpr int keptLines = 20000;
constexpr int maximumLineLength = 64 * 1024;
// Limits the pane's memory to about 25 MB (three bytes a character) when many lines are long.
constexpr int maximumCharacters = 8 * 1024 * 1024;
constexpr int keptCharacters = 6 * 1024 * 1024;

bool endsLine(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::ParagraphSeparator;
}

QString withLongLinesCut(const QString &text)
{
    if (text.size() <= maximumLineLength)
        return text;
    QString shown;
    for (int start = 0; start < text.size();) {
        int end = start;
        while (end < text.size() && !endsLine(text.at(end)))
            ++end;
        if (end - start > maximumLineLength)
            shown += text.midRef(start, maximumLineLength - 1) + QStringLiteral("…");
        else
            shown += text.midRef(start, end - start);
        if (end < text.size())
            shown += text.at(end);
        start = end + 1;
    }
    return shown;
}

} // namespace

TextWindow::TextWindow(QWidget *parent) : QWidget(parent)
{
    setFixedSize(800, 170);
    setWindowTitle(QStringLiteral("Log"));
    m_textView = new QTextEdit;
    m_textView->setObjectName(QStringLiteral("logTextView"));
    m_textView->setAccessibleName(spoken("Log", "日志"));
    m_textView->setReadOnly(true);
    m_textView->setUndoRedoEnabled(false);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(m_textView);
}

void TextWindow::setLogCheckBox(QCheckBox *checkBox)
{
    m_logCheckBox = checkBox;
}

void TextWindow::appendToPane(const QString &text)
{
    insertParagraph(withLongLinesCut(text));
    dropOldLines();
    QTextCursor end = m_textView->textCursor();
    end.movePosition(QTextCursor::End, QTextCursor::MoveAnchor, 1);
    m_textView->setTextCursor(end);
}

void TextWindow::appendLog(const QString &text)
{
    appendToPane(text);
    if (!LogFile::appendTimestampedLine(LogFile::updateLogPath(), text))
        warnOnceAboutLogFile();
}

void TextWindow::warnOnceAboutLogFile()
{
    if (m_fileProblemReported)
        return;
    m_fileProblemReported = true;
    const QString file = QDir::current().absoluteFilePath(LogFile::updateLogPath());
    insertParagraph(QDir::toNativeSeparators(file) +
                    QStringLiteral(" cannot be written: the log is only shown here."));
}

void TextWindow::insertParagraph(const QString &text)
{
    QTextCursor cursor(m_textView->document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    // The document cannot tell an empty first message from no message.
    if (m_hasLines)
        cursor.insertBlock();
    m_hasLines = true;
    cursor.insertText(text);
    cursor.endEditBlock();
}

void TextWindow::dropOldLines()
{
    const QTextDocument &document = *m_textView->document();
    int keepFrom = 0;
    if (document.blockCount() > maximumLines)
        keepFrom = document.findBlockByNumber(document.blockCount() - keptLines).position();
    if (document.characterCount() - keepFrom > maximumCharacters)
        keepFrom = document.findBlock(document.characterCount() - keptCharacters).position();
    if (keepFrom == 0)
        return;
    // A separate edit block: joined with the append it would span the whole document, and Qt would lay out
    // every remaining line again (110 ms instead of 12).
    QTextCursor cursor(m_textView->document());
    cursor.setPosition(keepFrom, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

void TextWindow::closeEvent(QCloseEvent *event)
{
    qDebug() << "窗口关闭事件触发!";
    if (m_logCheckBox)
        m_logCheckBox->setChecked(false);
    event->ignore();
    hide();
}
