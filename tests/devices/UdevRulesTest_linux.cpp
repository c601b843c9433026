#include "devices/Bootloader.h"
#include "devices/models/ModelTable.h"
#include "harness/process/Polling.h"

#include <QFile>
#include <QPair>
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

/// Vendor and product id.
using Ids = QPair<quint32, quint32>;

/// Returns the ids in the lines that match the whole `pattern`.
QSet<Ids> idsIn(const QString &pattern)
{
    QSet<Ids> ids;
    const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
    const QStringList lines = rules().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = expression.match(line);
        if (match.hasMatch())
            ids.insert({match.captured(1).toUInt(nullptr, 16), match.captured(2).toUInt(nullptr, 16)});
    }
    return ids;
}

QSet<Ids> idsOfTheTable()
{
    QSet<Ids> ids{{Bootloader::vendorId, Bootloader::productId}};
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        ids.insert({row.vendorId, row.productId});
    return ids;
}

// udev compares ids as text: USB ids in lower case, HID ids in upper case.

const QString usbLine =
    QStringLiteral(R"_(SUBSYSTEM=="usb", ENV\{DEVTYPE\}=="usb_device", )_"
                   R"_(ATTR\{idVendor\}=="([0-9a-f]{4})", ATTR\{idProduct\}=="([0-9a-f]{4})", )_"
                   R"_(TAG\+="uaccess")_");
const QString hidLine = QStringLiteral(
    R"_(SUBSYSTEM=="hidraw", KERNELS=="0003:([0-9A-F]{4}):([0-9A-F]{4})\.\*", TAG\+="uaccess")_");

TEST(UdevRulesTest, TheUsbDevicesOfEveryModelAndTheBootloaderAreGivenAccessAndNoOthers)
{
    EXPECT_EQ(idsIn(usbLine), idsOfTheTable());
}

TEST(UdevRulesTest, TheHidInterfacesOfEveryModelAndTheBootloaderAreGivenAccessAndNoOthers)
{
    EXPECT_EQ(idsIn(hidLine), idsOfTheTable());
}

TEST(UdevRulesTest, NoOtherLineGivesAccess)
{
    const QRegularExpression usb(QRegularExpression::anchoredPattern(usbLine));
    const QRegularExpression hid(QRegularExpression::anchoredPattern(hidLine));
    const QStringList giving = rules().split(QLatin1Char('\n')).filter(QStringLiteral("uaccess"));
    EXPECT_EQ(giving.size(), 2 * idsOfTheTable().size());
    for (const QString &line : giving)
        EXPECT_TRUE(usb.match(line).hasMatch() || hid.match(line).hasMatch()) << line.toStdString();
}

TEST(UdevRulesTest, TheRulesAreUpToDateWithTheModelIds)
{
    QProcess script;
    script.start(folder + QStringLiteral("make-udev-rules.sh"), QStringList());
    ASSERT_TRUE(waitForEnd(script));
    ASSERT_EQ(script.exitCode(), 0) << script.readAllStandardError().toStdString();
    EXPECT_EQ(QString::fromUtf8(script.readAllStandardOutput()), rules());
}

} // namespace
