// A small program with known widgets, which the probe inspects and operates.
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTextCodec>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>

namespace {

/// A window that must be closed twice, because it refuses the first close.
class StubbornWindow : public QWidget
{
public:
    QLabel *status = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        const bool refused = !m_asked;
        m_asked = true;
        event->setAccepted(!refused);
        status->setText(refused ? QStringLiteral("close refused") : QStringLiteral("closing"));
    }

private:
    bool m_asked = false;
};

template <typename Widget>
Widget *named(const char *name, QLayout &layout)
{
    auto *widget = new Widget;
    widget->setObjectName(QLatin1String(name));
    layout.addWidget(widget);
    return widget;
}

void fill(StubbornWindow &window)
{
    auto *layout = new QVBoxLayout(&window);
    auto *status = named<QLabel>("statusLabel", *layout);
    window.status = status;
    status->setText(QStringLiteral("idle 空闲"));
    status->setStyleSheet(QStringLiteral("color: blue;"));
    status->setToolTip(QStringLiteral("what it does"));

    auto *ask = named<QPushButton>("askButton", *layout);
    ask->setText(QStringLiteral("Ask"));
    QObject::connect(ask, &QPushButton::clicked, status, [status] {
        QMessageBox box(QMessageBox::Question, QStringLiteral("Question"), QStringLiteral("Really?"),
                        QMessageBox::Ok | QMessageBox::Cancel);
        const int answer = box.exec();
        status->setText(answer == QMessageBox::Ok ? QStringLiteral("agreed") : QStringLiteral("declined"));
    });

    auto *sleep = named<QPushButton>("sleepButton", *layout);
    QObject::connect(sleep, &QPushButton::clicked, status, [] { QThread::msleep(1000); });

    auto *disabled = named<QPushButton>("disabledButton", *layout);
    disabled->setEnabled(false);
    QObject::connect(disabled, &QPushButton::clicked, status,
                     [status] { status->setText(QStringLiteral("impossible")); });

    auto *tick = named<QCheckBox>("tickBox", *layout);
    tick->setText(
        QStringLiteral("A tick box with a long text, so that its middle is far from its indicator"));
    QObject::connect(tick, &QCheckBox::stateChanged, status,
                     [status](int state) { status->setText(QStringLiteral("tick %1").arg(state)); });

    auto *edit = named<QLineEdit>("fileEdit", *layout);
    QObject::connect(edit, &QLineEdit::returnPressed, status,
                     [status, edit] { status->setText(QLatin1String("entered ") + edit->text()); });

    named<QComboBox>("typeBox", *layout)->addItems({QStringLiteral("USB"), QStringLiteral("HID")});
    named<QLabel>("hiddenLabel", *layout)->hide();

    auto *covered = named<QPushButton>("coveredButton", *layout);
    auto *cover = new QLabel(&window);
    cover->setObjectName(QStringLiteral("cover"));
    QObject::connect(covered, &QPushButton::clicked, status,
                     [status] { status->setText(QStringLiteral("impossible")); });
    QTimer::singleShot(0, cover, [cover, covered] {
        cover->setGeometry(covered->geometry());
        cover->raise();
        cover->show();
    });
}

void report(const char *key, const QString &value)
{
    std::printf("%s %s\n", key, qUtf8Printable(value));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    report("country", QString::number(QLocale::system().country()));
    report("codec", QString::fromLatin1(QTextCodec::codecForLocale()->name()));
    report("application", QCoreApplication::applicationDirPath());
    report("working", QDir::currentPath());
    report("temporary", QStandardPaths::writableLocation(QStandardPaths::TempLocation));
    report("home", QDir::homePath());
    report("settings", QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    report("probe", qEnvironmentVariable("QUILLMARSH_PROBE_PORT_FILE", QStringLiteral("unset")));
    report("leak", qEnvironmentVariable("HARNESS_TEST_LEAK", QStringLiteral("unset")));
    report("arguments", QCoreApplication::arguments().mid(1).join(QLatin1Char('|')));
    std::fflush(stdout);
    StubbornWindow window;
    window.setWindowTitle(QStringLiteral("Subject"));
    window.setObjectName(QStringLiteral("subjectWindow"));
    fill(window);
    window.show();
    return QApplication::exec() + 7;
}
