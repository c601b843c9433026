#include "devices/Bootloader.h"
#include "devices/ModelTable.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

const QString folder = QStringLiteral(QUILLMARSH_SOURCE_DIR "/packaging/linux/");

QString rules()
{
    QFile file(folder + QStringLiteral("60-quillmarsh.rules"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

/// The vendor ids in the lines that match `pattern` as a whole.
QSet<quint32> vendorsIn(const QString &pattern)
{
    QSet<quint32> vendors;
    const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
    const QStringList lines = rules().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = expression.match(line);
        if (match.hasMatch())
            vendors.insert(match.captured(1).toUInt(nullptr, 16));
    }
    return vendors;
}

QSet<quint32> vendorsOfTheTable()
{
    QSet<quint32> vendors{Bootloader::vendorId};
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        vendors.insert(row.vendorId);
    return vendors;
}

// udev compares as text: in small letters in the one place and in capitals in the other.

TEST(UdevRulesTest, TheUsbDevicesOfEveryVendorInTheTableAndTheBootloaderAreGivenAccessAndNoOthers)
{
    const QString line = QStringLiteral(R"_(SUBSYSTEM=="usb", ENV\{DEVTYPE\}=="usb_device", )_"
                                        R"_(ATTR\{idVendor\}=="([0-9a-f]{4})", TAG\+="uaccess")_");
    EXPECT_EQ(vendorsIn(line), vendorsOfTheTable());
}

TEST(UdevRulesTest, TheHidInterfacesOfEveryVendorInTheTableAreGivenAccessAndNoOthers)
{
    const QString line =
        QStringLiteral(R"_(SUBSYSTEM=="hidraw", KERNELS=="0003:([0-9A-F]{4}):\*", TAG\+="uaccess")_");
    EXPECT_EQ(vendorsIn(line), vendorsOfTheTable());
}

TEST(UdevRulesTest, TheRulesAreWhatTheScriptMakesOfTheModelIdsToday)
{
    QProcess script;
    script.start(folder + QStringLiteral("make-udev-rules.sh"), QStringList());
    ASSERT_TRUE(script.waitForFinished(30000));
    ASSERT_EQ(script.exitCode(), 0) << script.readAllStandardError().toStdString();
    EXPECT_EQ(QString::fromUtf8(script.readAllStandardOutput()), rules());
}

} // namespace
