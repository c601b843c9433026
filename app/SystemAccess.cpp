#include "app/SystemAccess.h"

#include "devices/RefusedDevice.h"
#include "devices/models/ModelTable.h"
#include "driver/DriverCheck.h"
#include "widgets/TextWindow.h"

#include <QSignalBlocker>
#include <QTimer>

namespace {

class WindowLog : public DriverLog
{
public:
    explicit WindowLog(TextWindow &window) : m_window(window) {}

    void showLine(const QString &line) override { m_window.appendToPane(line); }
    void logLine(const QString &line) override { m_window.appendLog(line); }

private:
    TextWindow &m_window;
};

void showHint(const QString &hint, DriverLog &log)
{
    if (!hint.isEmpty())
        log.showLine(hint);
}

} // namespace

SystemAccess::SystemAccess()
    : m_deviceAccess([table = ModelTable()] {
          return findRefusedDeviceFile([&table](quint32 vendorId, quint32 productId) {
              return table.find(vendorId, productId, LaunchOptions()) != nullptr;
          });
      })
{
}

void SystemAccess::checkAtStart(const QString &applicationDir, TextWindow &window, QTimer &ticks)
{
    const auto check = [this, &applicationDir](DriverLog &log) {
        DriverCheck::run(applicationDir, log);
        showHint(m_deviceAccess.checkSettled(), log);
    };
    runAlone(check, window, ticks);
}

void SystemAccess::runAlone(const Check &check, TextWindow &window, QTimer &ticks)
{
    const QSignalBlocker noTicks(ticks);
    WindowLog log(window);
    m_checking = true;
    check(log);
    m_checking = false;
    const auto heldBack = std::exchange(m_heldBack, {});
    for (const auto &[target, line] : heldBack)
        target->appendLog(line);
}

bool SystemAccess::holdBack(TextWindow *window, const QString &line)
{
    if (!m_checking)
        return false;
    m_heldBack.append({window, line});
    return true;
}

void SystemAccess::checkDevice(ConnectionState state, TextWindow &window)
{
    if (state == ConnectionState::Nothing)
        return;
    WindowLog log(window);
    showHint(m_deviceAccess.check(), log);
}
