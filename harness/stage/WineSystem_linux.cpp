#include "harness/stage/WineSystem_linux.h"

#include "harness/BuildPaths.h"
#include "harness/stage/WinePrefix_linux.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace {

class WineSystem : public TargetSystem
{
public:
    WineSystem(const QString &build, const QString &program, WindowsVersion version, WindowFrames frames)
        : m_build(build),
          m_program(program),
          m_version(version),
          m_frames(frames),
          m_prefix(build + QLatin1String("/wine"))
    {
    }

    QString systemDrive() const { return m_prefix.systemDrive(); }

    QString program() const override { return m_build + QLatin1String("/bin/") + m_program; }
    QString standIn() const override { return m_build + QLatin1String("/bin/quillmarsh-standin.exe"); }
    QStringList busController(const QString &file, BusFile kind) const override
    {
        return QStringList{BuildPaths::listedBusController()} + busControllerArguments(file, kind);
    }

    QString prepareStage(const StageFolders &folders, QProcessEnvironment &environment) override
    {
        if (!m_prefix.isValid())
            return m_prefix.errorText();
        environment.insert(m_prefix.environment());
        // Wine passes variables that begin with "QT_" to a Windows program only if they have this prefix.
        environment.insert(QStringLiteral("WINEQT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
        // The probe can operate Qt's dialogs, but not the system's.
        environment.insert(QStringLiteral("WINEQT_QPA_PLATFORM"), QStringLiteral("windows:dialogs=none"));
        environment.insert(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"),
                           toProgramPath(folders.probePortFile));
        const QString version =
            m_version == WindowsVersion::Windows7 ? QStringLiteral("win7") : QStringLiteral("win10");
        // The temporary folder is set in the registry, which takes precedence over environment variables.
        const QString variables = QStringLiteral("Environment");
        const QString temporary = QDir::toNativeSeparators(toProgramPath(folders.temporary))
                                      .replace(QLatin1Char('/'), QLatin1Char('\\'));
        const QString managed =
            m_frames == WindowFrames::ByWindowManager ? QStringLiteral("Y") : QStringLiteral("N");
        if (!m_prefix.setUserValue(QStringLiteral("Software\\Wine\\X11 Driver"), QStringLiteral("Managed"),
                                   managed) ||
            !m_prefix.setUserValue(QStringLiteral("Software\\Wine"), QStringLiteral("Version"), version) ||
            !m_prefix.setUserValue(variables, QStringLiteral("TEMP"), temporary) ||
            !m_prefix.setUserValue(variables, QStringLiteral("TMP"), temporary))
            return QStringLiteral("cannot write the registry");
        if (!substituteFonts())
            return QStringLiteral("cannot write the registry");
        return linkLibraries(folders.application);
    }

    void setLocale(QProcessEnvironment &environment, const QString &locale) const override
    {
        // English is the default.
        if (!locale.startsWith(QLatin1String("en_")))
            m_prefix.setLocale(environment, locale);
    }

    void setDisplay(QProcessEnvironment &environment, const QString &display) const override
    {
        environment.insert(QStringLiteral("DISPLAY"), display);
    }

    QStringList command(const QString &program) const override { return {QStringLiteral("wine"), program}; }
    QString toProgramPath(const QString &path) const override { return QLatin1String("Z:") + path; }
    QString text(const QByteArray &contents) const override
    {
        return QString::fromUtf8(contents).replace(QLatin1String("\r\n"), QLatin1String("\n"));
    }

private:
    /// Replaces the fonts that come with Windows, which are not free, with a free one.
    bool substituteFonts()
    {
        for (const char *name : {"Tahoma", "Segoe UI", "Arial", "MS Shell Dlg", "MS Shell Dlg 2"}) {
            if (!m_prefix.setUserValue(QStringLiteral("Software\\Wine\\Fonts\\Replacements"),
                                       QLatin1String(name), QStringLiteral("DejaVu Sans")))
                return false;
        }
        return true;
    }

    /// Links the files of the build's folder "beside" next to the program. They have many megabytes, so they
    /// are not copied.
    QString linkLibraries(const QString &application) const
    {
        const QDir from(m_build + QLatin1String("/beside"));
        const QDir to(application);
        QDirIterator files(from.path(), QDir::Files, QDirIterator::Subdirectories);
        if (!files.hasNext())
            return QStringLiteral("nothing to put beside the program in ") + from.path();
        while (files.hasNext()) {
            const QString file = files.next();
            const QString name = from.relativeFilePath(file);
            to.mkpath(QFileInfo(name).path());
            if (!QFile::link(file, to.filePath(name)))
                return QStringLiteral("cannot link ") + name;
        }
        return QString();
    }

    QString m_build;
    QString m_program;
    WindowsVersion m_version;
    WindowFrames m_frames;
    WinePrefix m_prefix;
};

} // namespace

std::unique_ptr<TargetSystem> makeWineSystem(const QString &build, WindowsVersion version,
                                             WindowFrames frames)
{
    return std::make_unique<WineSystem>(build, QStringLiteral("quillmarsh.exe"), version, frames);
}

std::unique_ptr<TargetSystem> makeWineCommandLineSystem(const QString &build)
{
    return std::make_unique<WineSystem>(build, QStringLiteral("quillmarsh-cli.exe"),
                                        WindowsVersion::Windows10, WindowFrames::ByWine);
}

QString systemDriveOf(const TargetSystem &wineSystem)
{
    return dynamic_cast<const WineSystem &>(wineSystem).systemDrive();
}
