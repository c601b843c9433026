#include "widgets/TextWindow.h"

#include "tests/common/RecordedDebugStream.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLayout>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Tests with a separate working directory for the log file.
class TextWindowTest : public testing::Test
{
protected:
    TextWindowTest() { QDir::setCurrent(m_folder.path()); }
    ~TextWindowTest() override { QDir::setCurrent(m_before); }

    QStringList fileLines() const
    {
        // Reads lines with the platform's line endings.
        QFile file(m_folder.filePath(QStringLiteral("UPDLog.txt")));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    }
    QString pane() const { return m_window.textView()->toPlainText(); }

    const QString m_before = QDir::currentPath();
    QTemporaryDir m_folder;
    TextWindow m_window;
};

const QRegularExpression
    stampedHello(QStringLiteral("^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\] hello$"));

TEST_F(TextWindowTest, IsAFixedReadOnlyWindowOfItsOwn)
{
    EXPECT_EQ(m_window.minimumSize(), QSize(800, 170));
    EXPECT_EQ(m_window.maximumSize(), QSize(800, 170));
    EXPECT_EQ(m_window.windowTitle(), QStringLiteral("Log"));
    EXPECT_TRUE(m_window.isWindow());
    EXPECT_TRUE(m_window.textView()->isReadOnly());
    EXPECT_FALSE(m_window.textView()->isUndoRedoEnabled());
    EXPECT_EQ(m_window.layout()->spacing(), 0);
    EXPECT_EQ(m_window.layout()->count(), 1);
}

TEST_F(TextWindowTest, ALineGoesToThePaneAsItIsAndToTheFileWithTheTime)
{
    m_window.appendLog(QStringLiteral("hello"));
    EXPECT_EQ(pane(), QStringLiteral("hello"));
    ASSERT_EQ(fileLines().size(), 2);
    EXPECT_TRUE(stampedHello.match(fileLines().at(0)).hasMatch()) << fileLines().at(0).toStdString();
}

TEST_F(TextWindowTest, AnEmptyMessageIsAnEmptyPaneLineAndAFileLineOfTheStampAndOneBlank)
{
    m_window.appendLog(QString());
    m_window.appendLog(QStringLiteral("a"));
    m_window.appendLog(QString());
    m_window.appendLog(QStringLiteral("b"));
    EXPECT_EQ(pane(), QStringLiteral("\na\n\nb"));
    EXPECT_TRUE(fileLines().at(0).endsWith(QStringLiteral("] ")));
    EXPECT_EQ(fileLines().at(0).size(), 22);
}

TEST_F(TextWindowTest, AMessageWithALineFeedIsWrittenAsItIs)
{
    m_window.appendLog(QStringLiteral("one\ntwo"));
    EXPECT_EQ(pane(), QStringLiteral("one\ntwo"));
    ASSERT_EQ(fileLines().size(), 3);
    EXPECT_EQ(fileLines().at(1), QStringLiteral("two"));
}

TEST_F(TextWindowTest, TextThatLooksLikeMarkupIsShownAsItIs)
{
    const QString text = QStringLiteral("<b>bold</b> <br> &amp; <!-- gone -->");
    m_window.appendLog(text);
    EXPECT_EQ(pane(), text);
}

TEST_F(TextWindowTest, ThePaneScrollsToTheNewestLine)
{
    m_window.show();
    for (int line = 0; line < 100; ++line)
        m_window.appendLog(QString::number(line));
    const QTextEdit *view = m_window.textView();
    EXPECT_GT(view->verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(view->viewport()->rect().contains(view->cursorRect()));
    EXPECT_TRUE(m_window.textView()->textCursor().atEnd());
}

TEST_F(TextWindowTest, IfTheFileCannotBeWrittenThePaneStillWorksAndSaysSoOnce)
{
    QDir(m_folder.path()).mkdir(QStringLiteral("UPDLog.txt"));
    const RecordedDebugStream debug;
    m_window.appendLog(QStringLiteral("hello"));
    m_window.appendLog(QStringLiteral("again"));
    const QString file =
        QDir::toNativeSeparators(QDir::current().absoluteFilePath(QStringLiteral("UPDLog.txt")));
    EXPECT_EQ(pane(), QStringLiteral("hello\n") + file +
                          QStringLiteral(" cannot be written: the log is only shown here.\nagain"));
    EXPECT_EQ(debug.count(QStringLiteral("无法打开文件进行写入")), 2);
}

TEST_F(TextWindowTest, AboveTwentyTwoThousandLinesThePaneDropsToTheNewestTwentyThousandInOneStep)
{
    QString text = QStringLiteral("0");
    for (int line = 1; line < 22000; ++line)
        text += QLatin1Char('\n') + QString::number(line);
    m_window.appendLog(text);
    EXPECT_EQ(m_window.textView()->document()->blockCount(), 22000);
    m_window.appendLog(QStringLiteral("22000"));
    const QTextDocument *document = m_window.textView()->document();
    EXPECT_EQ(document->blockCount(), 20000);
    EXPECT_EQ(document->firstBlock().text(), QStringLiteral("2001"));
    EXPECT_EQ(document->lastBlock().text(), QStringLiteral("22000"));
    EXPECT_TRUE(m_window.textView()->textCursor().atEnd());
    EXPECT_EQ(fileLines().size(), 22002) << "the file keeps all";
}

TEST_F(TextWindowTest, DroppingOldLinesDoesNotLayOutTheRemainingOnes)
{
    m_window.appendLog(QString(21999, QLatin1Char('\n')));
    QVector<int> laidOut;
    QObject::connect(m_window.textView()->document(), &QTextDocument::contentsChange, &m_window,
                     [&laidOut](int, int, int added) { laidOut.append(added); });
    m_window.appendLog(QStringLiteral("the last straw"));
    ASSERT_EQ(m_window.textView()->document()->blockCount(), 20000);
    EXPECT_LT(*std::max_element(laidOut.begin(), laidOut.end()), 100);
}

TEST_F(TextWindowTest, ALineLongerThan64KiBIsCutInThePaneOnly)
{
    const QString longest(64 * 1024, QLatin1Char('x'));
    m_window.appendLog(longest);
    EXPECT_EQ(pane(), longest);
    m_window.appendLog(QStringLiteral("a\n") + longest + QStringLiteral("y\nb"));
    const QTextBlock cut = m_window.textView()->document()->findBlockByNumber(2);
    EXPECT_EQ(cut.text().size(), 64 * 1024);
    EXPECT_TRUE(cut.text().endsWith(QStringLiteral("x…")));
    EXPECT_EQ(cut.previous().text(), QStringLiteral("a"));
    EXPECT_EQ(cut.next().text(), QStringLiteral("b"));
    EXPECT_EQ(fileLines().at(2), longest + QLatin1Char('y'));
}

TEST_F(TextWindowTest, AboveEightMillionCharactersThePaneDropsToTheNewestSix)
{
    const QString longest(64 * 1024, QLatin1Char('x'));
    const QTextDocument *document = m_window.textView()->document();
    for (int line = 0; line < 127; ++line)
        m_window.appendLog(longest);
    EXPECT_EQ(document->blockCount(), 127);
    m_window.appendLog(longest);
    m_window.appendLog(QStringLiteral("newest"));
    EXPECT_EQ(document->blockCount(), 97);
    EXPECT_EQ(document->firstBlock().text(), longest);
    EXPECT_EQ(document->lastBlock().text(), QStringLiteral("newest"));
    EXPECT_EQ(fileLines().size(), 130) << "the file keeps all";
}

TEST_F(TextWindowTest, ManyShortLinesInOneMessageAreNotCut)
{
    QString text;
    for (int line = 0; line < 1000; ++line)
        text += QString(100, QLatin1Char('z')) + QLatin1Char('\n');
    m_window.appendLog(text + QStringLiteral("end"));
    EXPECT_EQ(pane(), text + QStringLiteral("end"));
}

TEST_F(TextWindowTest, ClosingItOnlyHidesItAndUnticksTheLogCheckBox)
{
    QCheckBox box;
    box.setChecked(true);
    m_window.setLogCheckBox(&box);
    m_window.show();
    const RecordedDebugStream debug;
    EXPECT_FALSE(m_window.close()) << "the close is refused";
    EXPECT_FALSE(m_window.isVisible());
    EXPECT_EQ(box.checkState(), Qt::Unchecked);
    EXPECT_EQ(debug.count(QStringLiteral("窗口关闭事件触发!")), 1);
}

TEST_F(TextWindowTest, ClosingItWithoutACheckBoxHidesIt)
{
    m_window.show();
    EXPECT_FALSE(m_window.close());
    EXPECT_FALSE(m_window.isVisible());
}

TEST_F(TextWindowTest, ClosingItAfterTheCheckBoxIsGoneHidesIt)
{
    m_window.setLogCheckBox(std::make_unique<QCheckBox>().get());
    m_window.show();
    EXPECT_FALSE(m_window.close());
    EXPECT_FALSE(m_window.isVisible());
}

} // namespace
