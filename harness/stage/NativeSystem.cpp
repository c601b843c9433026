#include "harness/stage/TargetSystem.h"

#include "harness/BuildPaths.h"
#include "harness/session/BusControllerCommand.h"

namespace {

class NativeSystem : public TargetSystem
{
public:
    explicit NativeSystem(const QString &program)
        : m_program(program.isEmpty() ? BuildPaths::program() : program)
    {
    }

    QString program() const override { return m_program; }
    QString standIn() const override { return BuildPaths::standIn(); }
    QStringList busController(const QString &file, BusFile kind) const override
    {
        return busControllerCommand(file, kind);
    }

    QString prepareStage(const StageFolders &folders, QProcessEnvironment &environment) override
    {
        environment.insert(QStringLiteral("HOME"), folders.home);
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folders.home + QLatin1String("/.config"));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), folders.home + QLatin1String("/.cache"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), folders.home + QLatin1String("/.local/share"));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folders.run);
        environment.insert(QStringLiteral("TMPDIR"), folders.temporary);
        environment.insert(QStringLiteral("QT_PLUGIN_PATH"), BuildPaths::plugins());
        environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
        environment.insert(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"), folders.probePortFile);
        // The program does not use OpenGL, and the software driver costs time and memory and leaks.
        environment.insert(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("none"));
        return QString();
    }

    void setLocale(QProcessEnvironment &environment, const QString &locale) const override
    {
        environment.insert(QStringLiteral("LC_ALL"), locale);
        environment.insert(QStringLiteral("LANG"), locale);
    }

    void setDisplay(QProcessEnvironment &environment, const QString &display) const override
    {
        const bool onScreen = !display.isEmpty();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"),
                           onScreen ? QStringLiteral("xcb") : QStringLiteral("offscreen"));
        if (onScreen)
            environment.insert(QStringLiteral("DISPLAY"), display);
        else
            environment.remove(QStringLiteral("DISPLAY"));
    }

    QStringList command(const QString &program) const override { return {program}; }
    QString toProgramPath(const QString &path) const override { return path; }
    QString text(const QByteArray &contents) const override { return QString::fromUtf8(contents); }

private:
    const QString m_program;
};

} // namespace

std::unique_ptr<TargetSystem> makeNativeSystem(const QString &program)
{
    return std::make_unique<NativeSystem>(program);
}
