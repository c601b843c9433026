#include "update/UpdateModeReport.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct SystemCase
{
    const char *name;
    QOperatingSystemVersion system;
    ReportLayout layout;
};

void PrintTo(const SystemCase &value, std::ostream *stream)
{
    *stream << value.name;
}

class ReportLayoutTest : public testing::TestWithParam<SystemCase>
{
};

TEST_P(ReportLayoutTest, IsChosenByTheSystemsVersionOnly)
{
    EXPECT_EQ(reportLayoutFor(GetParam().system), GetParam().layout);
}

// Unlike the constants, the version of the running system has a build number, which must be ignored.
INSTANTIATE_TEST_SUITE_P(
    Systems, ReportLayoutTest,
    testing::Values(
        SystemCase{"WindowsVista", {QOperatingSystemVersion::Windows, 6, 0, 6002}, ReportLayout::Shifted},
        SystemCase{"Windows7", QOperatingSystemVersion::Windows7, ReportLayout::Shifted},
        SystemCase{"Windows7WithItsBuildNumber",
                   {QOperatingSystemVersion::Windows, 6, 1, 7601},
                   ReportLayout::Shifted},
        SystemCase{"Windows8", {QOperatingSystemVersion::Windows, 6, 2, 9200}, ReportLayout::WithReportId},
        SystemCase{"Windows10", {QOperatingSystemVersion::Windows, 10, 0, 19045}, ReportLayout::WithReportId},
        SystemCase{"Windows11", {QOperatingSystemVersion::Windows, 10, 0, 22631}, ReportLayout::WithReportId},
        SystemCase{"Linux", {QOperatingSystemVersion::Unknown, 5, 0, 0}, ReportLayout::WithReportId},
        SystemCase{"MacOs", {QOperatingSystemVersion::MacOS, 10, 15, 0}, ReportLayout::WithReportId}),
    [](const auto &test) { return std::string(test.param.name); });

void expectReport(ReportLayout layout, const QByteArray &begin, int zeros)
{
    const QByteArray report = updateModeReport(layout);
    EXPECT_EQ(report.size(), 513);
    EXPECT_EQ(report.left(begin.size()).toHex(' '), begin.toHex(' '));
    EXPECT_EQ(report.mid(begin.size()), QByteArray(zeros, '\0'));
}

TEST(UpdateModeReportTest, OnWindows10ItBeginsWithTheReportIdAndHas501ZerosAfterTheCommand)
{
    expectReport(ReportLayout::WithReportId, QByteArray::fromHex("04435254000041 50504e4557"), 501);
}

TEST(UpdateModeReportTest, OnWindows7ItBeginsOneByteEarlierAndHas502ZerosAfterTheCommand)
{
    expectReport(ReportLayout::Shifted, QByteArray::fromHex("435254000041 50504e4557"), 502);
}

TEST(UpdateModeReportTest, TheCommandKindIs1WithTheReportIdAnd2WithoutIt)
{
    EXPECT_EQ(static_cast<int>(ReportLayout::WithReportId), 1);
    EXPECT_EQ(static_cast<int>(ReportLayout::Shifted), 2);
}

} // namespace
