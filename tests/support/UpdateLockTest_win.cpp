#include "support/lock/UpdateLock.h"

#include "tests/common/OwnLockFile.h"
#include "tests/common/RecordingReporter.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <utility>

#include <windows.h>

// These headers need windows.h, so they come after it.
#include <aclapi.h>
#include <sddl.h>

#include <gtest/gtest.h>

namespace {

struct HandleCloser
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// The kernel objects of a lock.
class UpdateLockOnWindowsTest : public testing::Test
{
protected:
    QString inMachine() const { return QStringLiteral("Global\\") + m_name; }
    QString inSession() const { return QStringLiteral("Local\\") + m_name; }
    static Handle open(const QString &name)
    {
        return Handle(OpenEventW(SYNCHRONIZE | READ_CONTROL, FALSE, wide(name)));
    }
    /// Returns the access control list of an object in the form of SDDL.
    static QString rightsOf(HANDLE object)
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        if (GetSecurityInfo(object, SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr,
                            nullptr, &descriptor) != ERROR_SUCCESS)
            return {};
        LPWSTR text = nullptr;
        ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, SDDL_REVISION_1,
                                                             DACL_SECURITY_INFORMATION, &text, nullptr);
        const QString rights = QString::fromWCharArray(text);
        LocalFree(text);
        LocalFree(descriptor);
        return rights;
    }

    QTemporaryDir m_folder;
    const QString m_name = QFileInfo(ownLockFile(m_folder)).fileName();
    RecordingReporter m_reporter;
    UpdateLock m_ours{ownLockFile(m_folder)};
    UpdateLock m_theirs{ownLockFile(m_folder)};
};

TEST_F(UpdateLockOnWindowsTest, ItIsForAllUsersOfTheMachine)
{
    const UpdateLock::Hold hold = m_ours.take(m_reporter);
    ASSERT_TRUE(hold);
    const Handle gate = open(inMachine());
    ASSERT_TRUE(gate);
    EXPECT_TRUE(rightsOf(gate.get()).endsWith(QStringLiteral(";WD)"))) << "only some users can open it";
    EXPECT_FALSE(open(inSession()));
    EXPECT_EQ(m_reporter.logLines(), QStringList());
}

TEST_F(UpdateLockOnWindowsTest, WhereTheMachineCannotBeLockedItIsForTheUserOnlyAndTheLogSaysSoOnce)
{
    // Another kind of object with this name: the system refuses to create the event, as it does to an account
    // without the right.
    const Handle refusal(CreateMutexW(nullptr, FALSE, wide(inMachine())));
    ASSERT_TRUE(refusal);
    UpdateLock::Hold hold = m_ours.take(m_reporter);
    ASSERT_TRUE(hold);
    EXPECT_TRUE(open(inSession()));
    const QString scope = QStringLiteral("Only your own copies of this program are kept from updating "
                                         "meanwhile, not those of other users.");
    EXPECT_EQ(m_reporter.logLines(), QStringList{scope});
    EXPECT_TRUE(m_theirs.isTakenElsewhere());
    EXPECT_FALSE(m_theirs.take(m_reporter));
    hold.reset();
    EXPECT_TRUE(m_ours.take(m_reporter));
    EXPECT_EQ(m_reporter.logLines().count(scope), 1);
}

} // namespace
