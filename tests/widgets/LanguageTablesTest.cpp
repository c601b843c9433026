#include "support/LanguageUtilities.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QResource>

#include <gtest/gtest.h>

namespace {

struct Entry
{
    const char *key;
    const char *english;
    const char *chinese;
};

constexpr Entry table[] = {
    {"ConnectType", "ConnType:", "连接方式:"},
    {"Flash the image", "FlashTheImage", "烧写镜像"},
    {"Select partition and flash", "Select flash", "选择分区烧写"},
    {"Device not detected", "Device not detected", "未发现设备"},
    {"Restart the device after a successful flash", "Restart the device after a successful flash",
     "烧写成功后重启设备"},
    {"Device Model", "DeviceModel: ", "设备型号: "},
    {"Server Firmware Version", "ServerFirVer: ", "服务器固件版本号: "},
    {"Current Status", "CurrentStatus: ", "当前状态: "},
    {"Log", "Log", "日志"},
    {"Current Status: Start Failed - No Device Detected", "CurrentStatus: Start Failed - No Device Detected",
     "当前状态: 开始失败 - 没检测到设备"},
    {"Current Status: Start Failed - IAP Device Detected", "CurrentStatus: Start Failed - Is IAP Device",
     "当前状态: 开始失败 - 当前是IAP设备"},
    {"Current Status: Trying to Parse Firmware Address from Server...",
     "CurrentStatus: Trying to Parse Firmware Address from Server...",
     "当前状态: 尝试从服务器解析固件地址..."},
    {"Current Status: Failed to Parse File Address", "CurrentStatus: Failed to Parse file Address",
     "当前状态: 解析文件地址失败"},
    {"Current Status: Successfully Parsed File Address", "CurrentStatus: Successfully Parsed file Address",
     "当前状态: 解析文件地址成功"},
    {"Current Status: Trying to Retrieve File...", "CurrentStatus: Successfully Parsed file Address",
     "当前状态: 尝试获取文件..."},
    {"Current Status: File Downloaded Successfully", "CurrentStatus: file Downloaded Successfully",
     "当前状态: 下载文件成功"},
    {"Current Status: Error Occurred While Downloading File!",
     "CurrentStatus: Error Occurred While Downloading File!", "当前状态: 下载文件发生错误!"},
    {"Current Status: Executing Local Flashing", "CurrentStatus: Executing Local Flashing",
     "当前状态: 执行本地烧录"},
    {"Current Status: Attempting to Upgrade...", "CurrentStatus: Attempting to Upgrade...",
     "当前状态: 尝试升级..."},
    {"Current Status: Upgrade Successful", "CurrentStatus: Upgrade Successful", "当前状态: 升级成功"},
    {"Current Status: Upgrade Failed!", "CurrentStatus: Upgrade Failed!", "当前状态: 升级失败!"},
    {"Device Detected", "Device Detected", "发现设备"},
    {"IAP Device Detected", "IAP Device Detected", "发现IAP设备"},
    {"Current Status: Preparing download task...", "CurrentStatus: Preparing download task...",
     "当前状态: 准备下载任务..."},
    {"Current Status: Error 1", "CurrentStatus: Error 1", "当前状态: 错误1"},
    {"Current Status: Waiting for server response...", "CurrentStatus: Waiting for server response...",
     "当前状态: 等待服务器返回..."},
    {"Current Status: Preparing to download...", "CurrentStatus: Preparing to download...",
     "当前状态: 准备下载..."},
    {"Current Status: Downloading...", "CurrentStatus: Downloading...", "当前状态: 正在下载"},
    {"Current Status: Download Complete - Please Wait", "CurrentStatus: Download Complete - Please Wait",
     "当前状态: 下载完成 - 稍后"},
    {"Current Status: Merging Files...", "CurrentStatus: Merging Files...", "当前状态: 合并文件..."},
    {"Current Status: Download Completed", "CurrentStatus: Download Completed", "当前状态: 完成下载"},
    {"Current Status: File Merging Failed", "CurrentStatus: File Merging Failed", "当前状态: 合并文件失败"},
    {"MustKnow",
     "    Note:\n"
     "    Do not shake the USB cable or the device\n"
     "    during the firmware upgrade,\n"
     "    or disconnect the device.\n"
     "    Do not close this program during the\n"
     "    upgrade,\n"
     "    wait for the program to finish.",
     "    需知:\n"
     "    在升级固件过程中请勿晃动usb线或晃动设备，\n"
     "    或拔插设备。\n"
     "    升级过程中请勿关闭本程序，\n"
     "    等待程序运行完毕。"},
    {"MustKnow_arouse",
     "    Warm Tips:\n"
     "\n"
     "    1. During the firmware update process, do not touch, move, or unplug the USB\n"
     "       cable/device.\n"
     "\n"
     "    2. Do not close this program during the update - wait until the process\n"
     "       completes.\n"
     "\n"
     "    3. The device screen may turn off during the update (this is normal). Please\n"
     "       be patient and wait. The screen will automatically relight after\n"
     "       successful completion.\n"
     "\n"
     "    4. If you encounter unresolved issues, please contact us for assistance.\n"
     "\n"
     "    5. During the upgrade process, it is normal for the software to exit.\n"
     "       Once the upgrade is complete, please manually reopen the software.",
     "    温馨提示:\n"
     "\n"
     "    1.在固件升级过程中请勿触碰晃动usb线和拔插设备。\n"
     "\n"
     "    2.升级过程中请勿关闭本程序，等待程序运行完毕。\n"
     "\n"
     "    3.在升级过程中，设备屏幕熄灭为正常现象，请耐\n"
     "      心等待。升级过程完成后，设备屏幕会正常点亮。\n"
     "\n"
     "    4.如您遇到无法解决的问题，请联系我们寻求帮助。\n"
     "\n"
     "    5.在升级过程中，软件退出为正常现象。升级过程完成后，\n"
     "      请手动打开软件。"},
    {"FindBootloader", "FindBootloader", "发现bootloader设备"},
    {"Bootloader>1", "bootloader>1", "bootloader设备过多"},
    {"Current Status: IAP Progress", "CurrentStatus: IAP upgrade in progress.", "当前状态: 正在进行IAP升级"},
    {"Current Status: md5 failed!", "CurrentStatus: MD5 verification failed.", "当前状态: md5对比失败"},
};

QByteArray contents(const QString &code)
{
    QFile file(QStringLiteral(":/JsonLanguage/%1.json").arg(code));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << code.toStdString();
    return file.readAll();
}

void expectTable(const QString &code, const char *Entry::*text)
{
    const QByteArray json = contents(code);
    QJsonParseError error;
    const QJsonObject texts = QJsonDocument::fromJson(json, &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    EXPECT_EQ(texts.size(), 38);
    int position = 0;
    for (const Entry &entry : table) {
        EXPECT_EQ(texts.value(QString::fromUtf8(entry.key)).toString(), QString::fromUtf8(entry.*text))
            << entry.key;
        // Searched for in the text of the file, because a parsed object is sorted.
        const int found = json.indexOf('"' + QByteArray(entry.key) + "\":");
        EXPECT_GT(found, position) << entry.key;
        position = found;
    }
}

TEST(LanguageTablesTest, TheEnglishTableIsCompleteAndInOrder)
{
    expectTable(QStringLiteral("en"), &Entry::english);
}

TEST(LanguageTablesTest, TheChineseTableIsCompleteAndInOrder)
{
    expectTable(QStringLiteral("zh_CN"), &Entry::chinese);
}

TEST(LanguageTablesTest, TheEnglishTextForRetrievingRepeatsTheParsedText)
{
    const LanguageUtilities tables;
    EXPECT_EQ(tables.lookup(QStringLiteral("Current Status: Trying to Retrieve File..."), QString(),
                            QStringLiteral("en")),
              QStringLiteral("CurrentStatus: Successfully Parsed file Address"));
}

TEST(LanguageTablesTest, TheChineseTextForAFailedMd5IsFound)
{
    LanguageUtilities tables;
    tables.setLanguage(QStringLiteral("zh_CN"));
    EXPECT_EQ(tables.lookup(QStringLiteral("Current Status: md5 failed!"), QString()),
              QStringLiteral("当前状态: md5对比失败"));
}

TEST(LanguageTablesTest, ALanguageCodeThatHasNoFileYieldsTheFallback)
{
    const LanguageUtilities tables;
    EXPECT_EQ(tables.lookup(QStringLiteral("Log"), QStringLiteral("日志"), QStringLiteral("fr")),
              QStringLiteral("日志"));
}

TEST(LanguageTablesTest, TheChineseNoticeOfTheAutomaticModesHas13LinesAnd497Bytes)
{
    const QString notice =
        LanguageUtilities().lookup(QStringLiteral("MustKnow_arouse"), QString(), QStringLiteral("zh_CN"));
    EXPECT_EQ(notice.count(QLatin1Char('\n')) + 1, 13);
    EXPECT_EQ(notice.toUtf8().size(), 497);
}

TEST(LanguageTablesTest, TheEnglishTableIsStoredCompressed)
{
    EXPECT_NE(QResource(QStringLiteral(":/JsonLanguage/en.json")).compressionAlgorithm(),
              QResource::NoCompression);
}

} // namespace
