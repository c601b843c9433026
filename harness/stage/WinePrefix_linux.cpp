#include "harness/stage/WinePrefix_linux.h"
#include "harness/process/Polling.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>

#include <filesystem>

namespace {

constexpr int makeLimitMs = 180000;
constexpr int endLimitMs = 15000;

namespace fs = std::filesystem;

fs::path pathOf(const QString &path)
{
    return fs::path(path.toStdString());
}

QProcessEnvironment environmentOf(const QString &prefix)
{
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
    variables.insert(QStringLiteral("WINEPREFIX"), prefix);
    variables.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    // Otherwise the first start offers to download Mono and Gecko, programs are added to menus, and crashes
    // start a debugger.
    variables.insert(QStringLiteral("WINEDLLOVERRIDES"),
                     QStringLiteral("mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d"));
    // File names are UTF-8, and the language is English.
    variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return variables;
}

QString run(const QString &prefix, const QString &program, const QStringList &arguments, int limitMs)
{
    QProcess process;
    process.setProcessEnvironment(environmentOf(prefix));
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (waitForEnd(process, limitMs) && process.exitStatus() == QProcess::NormalExit)
        return QString();
    return program + QLatin1String(": ") + process.errorString();
}

/// Creates the folder and returns the name pattern of the prefixes in it.
QString prefixesIn(const QString &folder)
{
    QDir().mkpath(folder);
    return folder + QLatin1String("/prefix-XXXXXX");
}

/// Copies a prefix. The files of drive C: become hard links, because they have half a gigabyte and are never
/// changed. Files that programs may change, above all the registry, are copied.
QString copyPrefix(const QString &from, const QString &to)
{
    const auto options = fs::copy_options::recursive | fs::copy_options::copy_symlinks;
    std::error_code problem;
    for (const QString &name :
         QDir(from).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        const bool drive = name == QLatin1String("drive_c");
        fs::copy(pathOf(from + QLatin1Char('/') + name), pathOf(to + QLatin1Char('/') + name),
                 drive ? options | fs::copy_options::create_hard_links : options, problem);
        if (problem)
            return name + QLatin1String(": ") + QString::fromStdString(problem.message());
    }
    return QString();
}

/// Quotes a text as in the registry's files.
QByteArray quoted(const QString &text)
{
    QByteArray result = "\"";
    for (const QChar &character : text) {
        const ushort code = character.unicode();
        if (code == '"' || code == '\\')
            result += '\\';
        if (code < 128)
            result += static_cast<char>(code);
        else
            result += "\\x" + QByteArray::number(code, 16).rightJustified(4, '0');
    }
    return result + '"';
}

} // namespace

WinePrefix::WinePrefix(const QString &folder) : m_folder(prefixesIn(folder))
{
    const QString first = folder + QLatin1String("/first");
    m_error = createTemplate(first);
    if (m_error.isEmpty())
        m_error = copyPrefix(first, m_folder.path());
}

WinePrefix::~WinePrefix()
{
    run(m_folder.path(), QStringLiteral("wineserver"), {QStringLiteral("--kill")}, endLimitMs);
    run(m_folder.path(), QStringLiteral("wineserver"), {QStringLiteral("--wait")}, endLimitMs);
}

QString WinePrefix::createTemplate(const QString &first) const
{
    QLockFile lock(first + QLatin1String(".lock"));
    lock.setStaleLockTime(0);
    if (!lock.tryLock(makeLimitMs))
        return QStringLiteral("another process holds the lock of ") + first;
    if (QFile::exists(first))
        return QString();
    // Created under another name and renamed once it is complete.
    const QString making = first + QLatin1String(".making");
    QDir(making).removeRecursively();
    QString problem = run(making, QStringLiteral("wine"),
                          {QStringLiteral("wineboot"), QStringLiteral("--init")}, makeLimitMs);
    if (problem.isEmpty())
        problem = run(making, QStringLiteral("wineserver"), {QStringLiteral("--wait")}, makeLimitMs);
    if (problem.isEmpty() && !QFile::exists(making + QLatin1String("/user.reg")))
        problem = QStringLiteral("wine made no registry in ") + making;
    if (problem.isEmpty() && !QDir().rename(making, first))
        problem = QStringLiteral("cannot rename ") + making;
    return problem;
}

bool WinePrefix::setUserValue(const QString &key, const QString &name, const QString &value)
{
    // Sections with the same name are merged.
    QFile file(m_folder.filePath(QStringLiteral("user.reg")));
    QString section = key;
    section.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    const QByteArray entry = "\n[" + section.toLatin1() + "]\n" + quoted(name) + '=' + quoted(value) + '\n';
    return file.open(QIODevice::Append) && file.write(entry) == entry.size();
}

void WinePrefix::setLocale(QProcessEnvironment &variables, const QString &locale) const
{
    // Wine uses the locale of the C library, which must have been compiled.
    const QString folder = m_folder.filePath(QStringLiteral("locales"));
    QDir().mkpath(folder);
    const int dot = locale.indexOf(QLatin1Char('.'));
    if (QProcess::execute(QStringLiteral("localedef"),
                          {QStringLiteral("-i"), locale.left(dot), QStringLiteral("-f"), locale.mid(dot + 1),
                           folder + QLatin1Char('/') + locale}) != 0)
        qWarning() << "Cannot compile the locale" << locale;
    variables.insert(QStringLiteral("LOCPATH"), folder);
    variables.insert(QStringLiteral("LC_ALL"), locale);
}

QProcessEnvironment WinePrefix::environment() const
{
    return environmentOf(m_folder.path());
}
