#include "app/bringToForeground.h"
#include "app/window/MainWindowLook.h"
#include "support/log/Diagnostics.h"
#include "support/process/ShutdownFlag.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareServerAddress.h"
#include "widgets/BackgroundWidget.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

// The benchmark fetches nothing.
QString firmwareServerAddress()
{
    return QStringLiteral("http://127.0.0.1:9");
}

QStringList firmwareKeys()
{
    return {};
}

namespace {

constexpr int lines = 100000;
constexpr int linesPerStep = 5;
constexpr int timerMs = 10;
constexpr int memoryMs = 200;

/// Records how late each tick of a timer on the GUI thread was.
class Lateness
{
public:
    Lateness()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(timerMs);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_figures.append(static_cast<double>(m_since.nsecsElapsed()) / 1e6 - timerMs);
            m_since.start();
        });
        m_since.start();
        m_timer.start();
    }
    const QJsonArray &figures() const { return m_figures; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    QJsonArray m_figures;
};

double rssKib()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4;
}

/// Logs 5,000 lines a second. Called on another thread, like the lines of an update.
void flood(bringToForeground *window)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < lines; ++i) {
        if (i % linesPerStep == 0)
            std::this_thread::sleep_until(start + std::chrono::milliseconds(i / linesPerStep));
        window->log(QStringLiteral("line %1: upgrade fwc: image.target.os, block of 4096 bytes written")
                        .arg(i, 6, 10, QLatin1Char('0')));
    }
}

} // namespace

/// Logs through the real window with its log window open, and writes the figures to the file in argument 1.
int main(int argc, char *argv[])
{
    Diagnostics::install();
    MainWindowLook::prepareQt();
    const QApplication application(argc, argv);
    MainWindowLook::applyProgramFont(false);
    BackgroundWidget background(false);
    background.show();
    auto *window = new bringToForeground(&background, false, false, QString());
    window->show();
    window->findChild<QCheckBox *>(QStringLiteral("logBox"))->setChecked(true);

    QJsonObject result;
    std::unique_ptr<Lateness> lateness;
    std::thread source;
    // Memory must not grow with the lines. Another thread watches it: on a slow machine the GUI thread is
    // busy.
    std::vector<double> memory;
    std::atomic<bool> isFlooded{false};
    std::thread watcher;
    QTimer::singleShot(2000, window, [&] {
        lateness = std::make_unique<Lateness>();
        watcher = std::thread([&] {
            while (!isFlooded) {
                memory.push_back(rssKib());
                std::this_thread::sleep_for(std::chrono::milliseconds(memoryMs));
            }
        });
        source = std::thread([&] {
            flood(window);
            // Queued behind the last line.
            QMetaObject::invokeMethod(window, &QCoreApplication::quit, Qt::QueuedConnection);
        });
    });
    QApplication::exec();
    source.join();
    isFlooded = true;
    watcher.join();
    result.insert(QStringLiteral("late"), lateness->figures());
    QJsonArray rss;
    for (const double kibibytes : memory)
        rss.append(kibibytes);
    result.insert(QStringLiteral("rss"), rss);
    lateness.reset();
    QFile file(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(result).toJson()) > 0;
    return isWritten ? 0 : 1;
}
