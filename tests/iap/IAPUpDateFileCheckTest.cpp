#include "tests/common/TextList.h"
#include "tests/iap/IAPUpDateTest.h"

namespace {

/// Files that the user wants the panel to program. The main widget may refuse them.
class IAPUpDateFileCheckTest : public IAPUpDateTest
{
};

TEST_F(IAPUpDateFileCheckTest, AFileThatIsRefusedIsNotProgrammedAndTheNextOneIs)
{
    makePanel();
    const int before = runs().size();
    m_host.takeEvents();
    m_host.verdictOnFile = UpdateReason::SignatureRefused;
    m_host.onCheck = [this] {
        EXPECT_TRUE(m_host.session().isRunning());
        EXPECT_FALSE(portType().isEnabled());
        download().click();
    };
    download().click();
    EXPECT_EQ(m_host.takeEvents(),
              list({"log Download is not possible while an update is running.", "ended"}))
        << "a second click during the check of the file has no effect";
    EXPECT_EQ(runs().size(), before);
    EXPECT_EQ(m_host.session().lastResult().reason, UpdateReason::SignatureRefused);
    EXPECT_TRUE(m_host.session().isStartAllowed());
    EXPECT_TRUE(portType().isEnabled());
    EXPECT_TRUE(download().isEnabled());
    m_host.onCheck = {};
    m_host.verdictOnFile = UpdateReason::None;
    EXPECT_TRUE(runToEnd());
}

TEST_F(IAPUpDateFileCheckTest, TheFileOfAnUpdateIsNotCheckedAgain)
{
    makePanel();
    m_host.verdictOnFile = UpdateReason::SignatureRefused;
    ASSERT_TRUE(m_host.session().begin(UpdateStage::AskingProgrammer, m_host));
    m_host.session().useImage(m_host.file);
    emit panel().sigStartClicked();
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_EQ(starts().size(), 1);
}

} // namespace
