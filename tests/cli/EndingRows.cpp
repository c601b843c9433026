#include "harness/BuildPaths.h"
#include "tests/cli/CliEndingTest.h"
#include "tests/cli/LockedDevice.h"

using namespace CliCases;

namespace {

const QString waitFor = QStringLiteral("--wait");
const QString writeType = QStringLiteral("--write-type");

} // namespace

const QVector<Ending> &endings()
{
    static const QVector<Ending> all{
        {"OverUsb",
         "updated over USB",
         "DevMaa",
         {update},
         0,
         "succeeded, resetting, none",
         "has the new firmware"},
        {"OverHid",
         "updated over HID",
         "DevMaa",
         {update, writeType, QStringLiteral("hid")},
         0,
         "succeeded, resetting, none",
         "has the new firmware"},
        {"WithoutARestart",
         "updated and not restarted",
         "DevMaa",
         {update, QStringLiteral("--no-reset")},
         0,
         "succeeded, flashing, none",
         "has the new firmware, in its bootloader"},
        {"ThroughTheProgrammer",
         "updated through the IAP programmer",
         "DevMdq",
         {update},
         0,
         "succeeded, programming, none",
         "has the new firmware"},
        {"InterruptedOnceWhileWriting",
         "interrupted once while the device is written",
         "DevMaa",
         {update},
         0,
         "succeeded, resetting, none",
         "has the new firmware",
         [](CliEndingTest &t) {
             t.playBurn(
                 {step("awaitFile", QStringLiteral("upgcmd.exe.go-on")), step("burn"), step("success")});
         },
         [](CliEndingTest &t) {
             t.waitForStage("flashing");
             t.interrupt();
             ASSERT_TRUE(t.waitForMessage("the update goes on"));
             WholeFile::write(t.s().program.applicationFolder() + QLatin1String("/upgcmd.exe.go-on"));
         }},

        {"FlasherFails",
         "the flasher ends without success",
         "DevMaa",
         {update},
         1,
         "failed, flashing, writing-failed",
         "may need another update, in its bootloader",
         [](CliEndingTest &t) {
             t.playBurn({step("progress"), step("exit", 1)});
         }},
        {"FlasherNeverReachesTheDevice",
         "the flasher does not find the device, ten times",
         "DevMaa",
         {update},
         1,
         "failed, entering-bootloader, device-not-reachable",
         "may need another update, in its bootloader",
         [](CliEndingTest &t) {
             t.s().program.setScript(
                 usbFlasher,
                 script({{step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)}}));
         }},
        {"ReportRefusedOverHid",
         "the device refuses to enter its bootloader",
         "DevMaa",
         {update, writeType, QStringLiteral("hid")},
         1,
         "failed, entering-bootloader, bootloader-not-entered",
         "untouched",
         [](CliEndingTest &t) {
             t.s().devices[0].insert(QStringLiteral("writes"),
                                     QJsonObject{{QStringLiteral("answer"), QStringLiteral("refused")}});
         }},
        {"ProgrammerFails",
         "the IAP programmer ends without success",
         "DevMdq",
         {update},
         1,
         "failed, programming, writing-failed",
         "may need another update",
         [](CliEndingTest &t) {
             t.s().program.setScript(
                 iapProgrammer,
                 scriptFor(QStringLiteral("Start"),
                           {{step("print", QStringLiteral("SetProgress: 42\n")), step("exit", 1)}}));
         }},
        {"InterruptedTwiceWhileWriting",
         "interrupted twice while the device is written",
         "DevMaa",
         {update},
         1,
         "cancelled, flashing, interrupted",
         "may need another update, in its bootloader",
         [](CliEndingTest &t) { t.playBurn({step("hang")}); },
         [](CliEndingTest &t) {
             t.waitForStage("flashing");
             t.interruptTwice();
         }},
        {"InterruptedTwiceWhileProgramming",
         "interrupted twice while the IAP programmer writes",
         "DevMdq",
         {update},
         1,
         "cancelled, programming, interrupted",
         "may need another update",
         [](CliEndingTest &t) {
             t.s().program.setScript(iapProgrammer, scriptFor(QStringLiteral("Start"), {{step("hang")}}));
         },
         [](CliEndingTest &t) {
             t.waitForStage("programming");
             t.interruptTwice();
         }},

        {"ModelNotNamed",
         "a device in its bootloader, and no --model",
         "DevMaa",
         {update},
         2,
         "cancelled, idle, no-model-chosen",
         "untouched",
         [](CliEndingTest &t) {
             t.s().devices = {ModelOnBus::bootloader(t.s().model())};
         }},

        {"NoDevice",
         "no matching device in time",
         "DevMaa",
         {update, waitFor, QStringLiteral("1")},
         3,
         "failed, idle, no-device",
         "untouched",
         [](CliEndingTest &t) {
             t.s().devices[0].insert(QStringLiteral("start"), QStringLiteral("absent"));
         }},
        {"SwitchedOff",
         "a device that the control list does not switch on",
         "DevMaa",
         {update},
         3,
         "failed, idle, no-device",
         "untouched",
         [](CliEndingTest &t) {
             t.s().program.setControlList({QStringLiteral("DevMbu")}, {});
         }},
        {"SeveralBootloaders",
         "several devices in their bootloaders",
         "DevMaa",
         {update, QStringLiteral("--model"), QStringLiteral("DevMaa")},
         3,
         "failed, idle, no-device",
         "untouched",
         [](CliEndingTest &t) {
             t.s().devices = {ModelOnBus::bootloader(t.s().model()),
                              ModelOnBus::bootloader(QStringLiteral("DevMah"))};
         }},

        {"NoServer",
         "the server does not answer",
         "DevMaa",
         {update},
         4,
         "failed, fetching, address-not-found",
         "untouched",
         [](CliEndingTest &t) {
             t.s().withServer = false;
         }},
        {"NoFirmwareForTheModel",
         "the manifest has no such model",
         "DevMaa",
         {update},
         4,
         "failed, fetching, address-not-found",
         "untouched",
         [](CliEndingTest &t) {
             t.s().firmware.setManifest(R"({"CurrentVersion":{}})");
         }},
        {"WrongSum",
         "the image has another sum",
         "DevMaa",
         {update},
         4,
         "failed, fetching, checksum-mismatch",
         "untouched",
         [](CliEndingTest &t) {
             t.s().firmware.setField(t.s().model(), QStringLiteral("md5"), sumOf("another"));
         }},
        {"ImageNeverWhole",
         "a part of the image never arrives",
         "DevMaa",
         {update},
         4,
         "failed, fetching, download-failed",
         "untouched",
         [](CliEndingTest &t) {
             t.s().serverFaults = QStringList{QStringLiteral("404:path=*.img,range=5")};
         }},
        {"FileMissing",
         "the image of --file is not there",
         "DevMaa",
         {update, QStringLiteral("--file"), QStringLiteral("not/there.img")},
         4,
         "failed, idle, image-unreadable",
         "untouched"},
        {"FileNotTakenByTheProgrammer",
         "an image that the IAP programmer does not take",
         "DevMdq",
         {update, QStringLiteral("--file"), QStringLiteral("../ControlList.img")},
         4,
         "failed, asking-programmer, image-refused",
         "untouched",
         [](CliEndingTest &t) {
             WholeFile::write(t.besideTheWorkingFolder("ControlList.img"), "an image");
         }},
        {"SignatureThatCannotBeVerified",
         "a signature is required, but no key is known",
         "DevMaa",
         {update, QStringLiteral("--require-signature")},
         4,
         "failed, idle, signature-refused",
         "untouched"},

        {"DeviceLocked",
         "the user may not open the device",
         "DevMaa",
         {update},
         5,
         "failed, idle, no-access",
         "untouched",
         [](CliEndingTest &t) {
             ASSERT_FALSE(lockDevice(t.s()).isEmpty());
         }},
        {"FlasherMissing",
         "the flasher is missing",
         "DevMaa",
         {update},
         5,
         "failed, idle, tool-missing",
         "untouched",
         [](CliEndingTest &t) {
             t.remove(usbFlasher);
         }},
        {"ProgrammerMayNotBeRun",
         "the IAP programmer may not be run",
         "DevMdq",
         {update},
         5,
         "failed, idle, tool-missing",
         "untouched",
         [](CliEndingTest &t) {
             ASSERT_TRUE(
                 QFile::setPermissions(t.s().program.applicationFolder() + QLatin1Char('/') + iapProgrammer,
                                       QFile::ReadOwner | QFile::WriteOwner));
         }},
        {"NoTemporaryFolder",
         "the temporary folder cannot be used",
         "DevMbu",
         {update},
         5,
         "failed, idle, folder-unusable",
         "untouched",
         [](CliEndingTest &t) {
             // Not even an administrator can make a folder inside a file.
             const QString file = t.besideTheWorkingFolder("no-folder");
             ASSERT_TRUE(WholeFile::write(file, "a file"));
             t.s().program.setVariable(QStringLiteral("TMPDIR"), file);
         }},

        {"AnotherCopy",
         "another copy of the program is updating a device",
         "DevMaa",
         {update, QStringLiteral("--model"), QStringLiteral("DevMaa")},
         6,
         "failed, idle, another-copy",
         "untouched",
         [](CliEndingTest &t) {
             ASSERT_TRUE(t.s().start({QStringLiteral("list")}));
             ASSERT_TRUE(t.s().bus.waitForExit() == 0);
             t.other = std::make_unique<OtherCopy>(t.s(), BuildPaths::commandLineProgram());
             ASSERT_TRUE(t.other->startAndWrite({update}));
         }},

        {"InterruptedWhileWaiting",
         "interrupted while it waits for a device",
         "DevMaa",
         {update, waitFor, QStringLiteral("600")},
         130,
         "cancelled, idle, interrupted",
         "untouched",
         [](CliEndingTest &t) { t.s().devices[0].insert(QStringLiteral("start"), QStringLiteral("absent")); },
         [](CliEndingTest &t) {
             ASSERT_TRUE(t.waitForMessage("Waiting for a device."));
             t.interrupt();
         }},
        {"InterruptedWhileFetching",
         "interrupted while the firmware is fetched",
         "DevMaa",
         {update},
         130,
         "cancelled, fetching, interrupted",
         "untouched",
         [](CliEndingTest &t) {
             t.s().serverFaults = QStringList{QStringLiteral("stall-after:path=*.img,range=5,bytes=50000")};
         },
         [](CliEndingTest &t) {
             t.waitForStage("fetching");
             t.interrupt();
         }},
    };
    return all;
}
