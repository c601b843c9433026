#include "checks/SystemFindings.h"

#include <gtest/gtest.h>

namespace {

using Verdict = Finding::Verdict;

TEST(SystemFindingsTest, TheDriverIsNeverAProblemBecauseTheDeviceMayNotNeedIt)
{
    const struct
    {
        const char *name;
        std::optional<DriverState> state;
        Verdict verdict;
        const char *inText;
    } cases[] = {
        {"none needed", std::nullopt, Verdict::Ok, "needs none"},
        {"running", DriverState{true, {QStringLiteral("a.inf")}}, Verdict::Ok, "is running"},
        {"not running", DriverState{false, {}}, Verdict::Warning, "not running"},
        {"package incomplete", DriverState{false, {QStringLiteral("a.inf")}}, Verdict::Warning, "a.inf"},
        {"drivers not listed", DriverState{std::nullopt, {}}, Verdict::Warning, "does not list"},
        {"drivers not listed, package incomplete", DriverState{std::nullopt, {QStringLiteral("a.inf")}},
         Verdict::Warning, "a.inf"},
    };
    for (const auto &c : cases) {
        const Finding found = SystemFindings::driver(c.state);
        EXPECT_EQ(found.verdict, c.verdict) << c.name;
        EXPECT_TRUE(found.text.contains(QLatin1String(c.inText))) << c.name << ": " << qPrintable(found.text);
        EXPECT_EQ(found.remedy.isEmpty(), c.verdict == Verdict::Ok) << c.name;
    }
}

TEST(SystemFindingsTest, AnUnusableTemporaryFolderIsAProblem)
{
    const QString path = QStringLiteral("/tmp/x");
    EXPECT_EQ(SystemFindings::temporaryFolder(path, {}),
              Findings::ok(QStringLiteral("temporary-folder"), path));
    const Finding refused = SystemFindings::temporaryFolder(path, QStringLiteral("/tmp/x is a link"));
    EXPECT_EQ(refused.verdict, Verdict::Problem);
    EXPECT_EQ(refused.text, QStringLiteral("/tmp/x is a link"));
}

TEST(SystemFindingsTest, TheDiskMustHoldThePartsAndTheImageTogether)
{
    constexpr qint64 mib = qint64{1024} * 1024;
    const struct
    {
        qint64 available;
        qint64 imageSize;
        Verdict verdict;
    } cases[] = {
        {200 * mib, 100 * mib, Verdict::Ok}, {200 * mib - 1, 100 * mib, Verdict::Problem},
        {255 * mib, 0, Verdict::Warning},    {256 * mib, 0, Verdict::Ok},
        {10 * mib, 1 * mib, Verdict::Ok},    {-1, 0, Verdict::Problem},
    };
    for (const auto &c : cases)
        EXPECT_EQ(SystemFindings::diskSpace(c.available, c.imageSize).verdict, c.verdict)
            << c.available << ' ' << c.imageSize;
}

TEST(SystemFindingsTest, AnotherCopyThatIsUpdatingIsAProblem)
{
    EXPECT_EQ(SystemFindings::updateLock(false).verdict, Verdict::Ok);
    EXPECT_EQ(SystemFindings::updateLock(true).verdict, Verdict::Problem);
}

TEST(SystemFindingsTest, WithoutTlsASecureAddressIsAProblemAndAnInsecureAddressIsAlwaysAWarning)
{
    const QString secure = QStringLiteral("https://firmware.example/m.json");
    const QString library = QStringLiteral("OpenSSL 3");
    EXPECT_EQ(SystemFindings::tls(secure, library), Findings::ok(QStringLiteral("tls"), library));
    EXPECT_EQ(SystemFindings::tls(secure, QString()).verdict, Verdict::Problem);
    EXPECT_EQ(SystemFindings::tls(QStringLiteral("http://firmware.example/m.json"), library).verdict,
              Verdict::Warning);
}

} // namespace
