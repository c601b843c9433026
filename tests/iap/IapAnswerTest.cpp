#include "iap/IapAnswer.h"

#include "tests/common/TextList.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    std::string answer;
    QStringList comPorts;
    QStringList usbDevices;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << testing::PrintToString(row.answer);
}

class IapAnswerTest : public testing::TestWithParam<Row>
{
};

TEST_P(IapAnswerTest, IsReadAsPortsAndDevices)
{
    const IapAnswer answer = readIapAnswer(QString::fromStdString(GetParam().answer));
    EXPECT_EQ(answer.comPorts, GetParam().comPorts);
    EXPECT_EQ(answer.usbDevices, GetParam().usbDevices);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, IapAnswerTest,
    testing::Values(Row{"", {}, {}}, Row{"nothing is connected", {}, {}},
                    Row{"COM:COM3;", list({"COM3"}), {}}, Row{"COM: \t COM3;", list({"COM3"}), {}},
                    Row{"COM:\r\nCOM3 ;", list({"COM3"}), {}},
                    Row{"COM:COM4;COM:COM3; other text COM: COM10;", list({"COM4", "COM3", "COM10"}), {}},
                    Row{"device:HID one;device: HID two ;", {}, list({"HID one", "HID two"})},
                    Row{"device:b;COM:1;device:a;COM:2;", list({"1", "2"}), list({"b", "a"})},
                    // An entry ends with ";", wherever that is; without one it is not an entry.
                    Row{"COM:1", {}, {}}, Row{"COM:1\ndevice:x;", list({"1\ndevice:x"}), list({"x"})},
                    Row{"COM:;", {}, {}}, Row{"COM: ;device:y;", list({""}), list({"y"})},
                    Row{"com:1;Device:x;", {}, {}}, Row{"device:串口设备;", {}, list({"串口设备"})}));

} // namespace
