#include "report/SystemFacts.h"

#include "driver/DriverState.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <windows.h>
// Depends on windows.h, which must come first.
#include <lmcons.h>

#include <array>
#include <memory>

namespace {

struct HandleCloser
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

QString shortName(const QString &folder)
{
    const QString native = QDir::toNativeSeparators(folder);
    std::array<wchar_t, MAX_PATH + 1> name{};
    const DWORD length = GetShortPathNameW(reinterpret_cast<const wchar_t *>(native.utf16()), name.data(),
                                           static_cast<DWORD>(name.size()));
    return length > 0 && length < name.size() ? QString::fromWCharArray(name.data()) : QString();
}

bool isElevated()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return false;
    const std::unique_ptr<void, HandleCloser> owner(token);
    TOKEN_ELEVATION elevation = {};
    DWORD bytes = 0;
    return GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &bytes) &&
           elevation.TokenIsElevated != 0;
}

} // namespace

QStringList SystemFacts::homeFolders()
{
    const QString home = QDir::homePath();
    const QString profile = qEnvironmentVariable("USERPROFILE");
    return {home, profile, shortName(home), shortName(profile)};
}

QStringList SystemFacts::userNames()
{
    std::array<wchar_t, UNLEN + 1> name{};
    auto length = static_cast<DWORD>(name.size());
    QStringList names{qEnvironmentVariable("USERNAME"), QFileInfo(QDir::homePath()).fileName(),
                      QFileInfo(shortName(QDir::homePath())).fileName()};
    if (GetUserNameW(name.data(), &length))
        names.append(QString::fromWCharArray(name.data()));
    return names;
}

Qt::CaseSensitivity SystemFacts::caseSensitivityOfNames()
{
    return Qt::CaseInsensitive;
}

QJsonObject SystemFacts::rights()
{
    return {{QStringLiteral("administrator"), isElevated()}, {QStringLiteral("groups"), QJsonArray()}};
}

QJsonObject SystemFacts::deviceAccess(const std::function<bool(quint32)> & /*isWanted*/)
{
    const std::optional<DriverState> state = DriverState::ofThisSystem();
    QJsonArray missing;
    for (const QString &file : state ? state->missingFiles : QStringList())
        missing.append(QFileInfo(file).fileName());
    return {{QStringLiteral("kind"), QStringLiteral("driver")},
            {QStringLiteral("running"), state && state->running ? QJsonValue(*state->running) : QJsonValue()},
            {QStringLiteral("missingFiles"), missing}};
}
