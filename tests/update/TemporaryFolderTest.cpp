#include "update/TemporaryFolder.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using TemporaryFolder::Entry;

constexpr quint32 root = 0;
constexpr quint32 user = 1000;
constexpr quint32 stranger = 1001;

const QString path = QStringLiteral("/tmp/Folder");
const Entry own{Entry::Folder, user, 0700};
const Entry system{Entry::Folder, root, 01777};

TEST(TemporaryFolderTest, OnlyAFolderOfTheUserToWhichNobodyElseMayWriteIsTrusted)
{
    struct Row
    {
        Entry folder;
        const char *reason;
    };
    const char *const stranges = " belongs to another user and is not used.";
    const char *const open = " can be changed by other users and is not used.";
    const Row rows[] = {
        {own, ""},
        {{Entry::Folder, user, 0755}, ""},
        {{Entry::Folder, user, 0750}, ""},
        {{Entry::Folder, user, 0720}, open},
        {{Entry::Folder, user, 0702}, open},
        {{Entry::Folder, user, 0777}, open},
        // The sticky bit protects files from removal, but others can still add files.
        {{Entry::Folder, user, 01777}, open},
        {{Entry::Folder, stranger, 0700}, stranges},
        {{Entry::Folder, root, 0700}, stranges},
        {{Entry::Link, user, 0777}, " is a link to another place and is not used."},
        {{Entry::Other, user, 0600}, " is not a folder."},
        {{Entry::Missing, 0, 0}, " is not a folder."},
    };
    for (const Row &row : rows) {
        const QString reason = TemporaryFolder::reasonNotToTrust(path, row.folder, system, user);
        EXPECT_EQ(reason.isEmpty(), *row.reason == 0) << reason.toStdString();
        EXPECT_TRUE(reason.isEmpty() || reason.startsWith(path + QLatin1String(row.reason)))
            << reason.toStdString();
    }
}

TEST(TemporaryFolderTest, TheParentFolderMustNotAllowOthersToReplaceTheFolder)
{
    struct Row
    {
        Entry around;
        bool trusted;
    };
    const Row rows[] = {
        {{Entry::Folder, root, 01777}, true},      {{Entry::Folder, user, 0700}, true},
        {{Entry::Folder, user, 0755}, true},       {{Entry::Folder, root, 0755}, true},
        {{Entry::Folder, user, 01777}, true},      {{Entry::Folder, root, 0777}, false},
        {{Entry::Folder, user, 0770}, false},      {{Entry::Folder, stranger, 0755}, false},
        {{Entry::Folder, stranger, 01777}, false},
    };
    for (const Row &row : rows) {
        const QString reason = TemporaryFolder::reasonNotToTrust(path, own, row.around, user);
        EXPECT_EQ(reason.isEmpty(), row.trusted) << row.around.owner << ' ' << row.around.mode;
        EXPECT_TRUE(reason.isEmpty() ||
                    reason.startsWith(path + QLatin1String(" can be replaced by other users")));
    }
}

TEST(TemporaryFolderTest, ACreatedFolderMayBeUsed)
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("a/b"));
    EXPECT_EQ(TemporaryFolder::reasonNotToUse(folder), folder + QStringLiteral(" is not a folder."));
    EXPECT_TRUE(TemporaryFolder::create(folder));
    EXPECT_EQ(TemporaryFolder::reasonNotToUse(folder), QString());
    EXPECT_EQ(TemporaryFolder::reasonNotToWriteIn(folder), QString());
    EXPECT_TRUE(QDir(folder).isEmpty());
    EXPECT_TRUE(TemporaryFolder::create(folder));
}

} // namespace
