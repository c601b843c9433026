#include "report/SystemFacts.h"

#include "devices/DeviceFiles_linux.h"
#include "devices/UsbId.h"
#include "report/FileFacts.h"

#include <QDir>
#include <QJsonArray>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <vector>

namespace {

constexpr std::size_t entryBytes = 16384;

/// The user's entry in the system's list of users; empty texts if there is none.
struct Account
{
    QString name;
    QString fullName;
    QString folder;
};

Account accountOfUser()
{
    struct passwd entry = {};
    struct passwd *found = nullptr;
    std::vector<char> buffer(entryBytes);
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    // The field holds the full name and, after commas, rooms and telephone numbers.
    const QString fullName = QString::fromUtf8(entry.pw_gecos).section(QLatin1Char(','), 0, 0);
    return {QString::fromUtf8(entry.pw_name), fullName, QString::fromUtf8(entry.pw_dir)};
}

QString groupName(gid_t group)
{
    struct group entry = {};
    struct group *found = nullptr;
    std::vector<char> buffer(entryBytes);
    if (getgrgid_r(group, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return QString::number(group);
    return QString::fromUtf8(entry.gr_name);
}

QJsonObject deviceFile(const DeviceFiles::DeviceFile &file)
{
    struct stat status = {};
    const bool exists = stat(QFile::encodeName(file.path).constData(), &status) == 0;
    return {{QStringLiteral("path"), file.path},
            {QStringLiteral("vendorId"), UsbId::text(file.vendorId)},
            {QStringLiteral("productId"), UsbId::text(file.productId)},
            {QStringLiteral("mode"),
             exists ? QJsonValue(QString::number(status.st_mode & 07777, 8)) : QJsonValue()},
            {QStringLiteral("group"), exists ? QJsonValue(groupName(status.st_gid)) : QJsonValue()},
            {QStringLiteral("refused"), DeviceFiles::isRefused(file.path)}};
}

} // namespace

QStringList SystemFacts::homeFolders()
{
    const QString home = QDir::homePath();
    return {home, QDir(home).canonicalPath(), accountOfUser().folder};
}

QStringList SystemFacts::userNames()
{
    const Account account = accountOfUser();
    QStringList names{account.name, account.fullName};
    for (const char *variable : {"USER", "LOGNAME"})
        names.append(qEnvironmentVariable(variable));
    return names;
}

Qt::CaseSensitivity SystemFacts::caseSensitivityOfNames()
{
    return Qt::CaseSensitive;
}

QJsonObject SystemFacts::rights()
{
    QJsonArray groups;
    std::array<gid_t, 256> ids{};
    const int count = getgroups(static_cast<int>(ids.size()), ids.data());
    for (int i = 0; i < count; ++i)
        groups.append(groupName(ids.at(static_cast<std::size_t>(i))));
    return {{QStringLiteral("administrator"), geteuid() == 0}, {QStringLiteral("groups"), groups}};
}

QJsonObject SystemFacts::deviceAccess(const std::function<bool(quint32)> &isWanted)
{
    QJsonArray files;
    for (const DeviceFiles::DeviceFile &file : DeviceFiles::list()) {
        if (isWanted(file.vendorId))
            files.append(deviceFile(file));
    }
    QJsonArray rules;
    // In the order of precedence.
    for (const char *folder :
         {"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/lib/udev/rules.d", "/lib/udev/rules.d"})
        rules.append(FileFacts::of(QLatin1String(folder) + QLatin1String("/60-quillmarsh.rules")));
    return {{QStringLiteral("kind"), QStringLiteral("device-files")},
            {QStringLiteral("files"), files},
            {QStringLiteral("rules"), rules}};
}
