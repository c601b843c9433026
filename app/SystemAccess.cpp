#include "app/SystemAccess.h"

#include "devices/ModelTable.h"
#include "driver/DriverCheck.h"
#include "driver/RefusedDevice.h"
#include "widgets/TextWindow.h"

#include <QSignalBlocker>
#include <QTimer>

namespace {

class WindowLog : public DriverLog
{
public:
    explicit WindowLog(TextWindow &window) : m_window(window) {}

    void shown(const QString &line) override { m_window.appendShown(line); }
    void logged(const QString &line) override { m_window.appendLog(line); }

private:
    TextWindow &m_window;
};

} // namespace

SystemAccess::SystemAccess()
    : m_deviceAccess([table = ModelTable()] {
          return refusedDeviceFile([&table](quint32 vendorId, quint32 productId) {
              return table.find(vendorId, productId, LaunchOptions()) != nullptr;
          });
      })
{
}

void SystemAccess::checkAtStart(const QString &applicationDir, TextWindow &window, QTimer &ticks)
{
    const auto check = [this, &applicationDir](DriverLog &log) {
        DriverCheck::run(applicationDir, log);
        m_deviceAccess.checkSettled(log);
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
    const auto kept = std::exchange(m_kept, {});
    for (const auto &[keptFor, line] : kept)
        keptFor->appendLog(line);
}

bool SystemAccess::keeps(TextWindow *window, const QString &line)
{
    if (m_checking)
        m_kept.append({window, line});
    return m_checking;
}

void SystemAccess::checkDevice(ConnectionState state, TextWindow &window)
{
    WindowLog log(window);
    if (state != ConnectionState::Nothing)
        m_deviceAccess.check(log);
}
