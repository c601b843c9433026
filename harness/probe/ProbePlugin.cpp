#include "harness/probe/ProbeServer.h"

#include <QApplication>
#include <QGenericPlugin>

#include <cstdio>

namespace {

/// Owned by the application, which deletes it last. Its sockets must be closed before that.
ProbeServer *runningServer = nullptr;

void stopServer()
{
    if (runningServer)
        runningServer->stop();
}

} // namespace

/// The plugin that Qt loads for QT_QPA_GENERIC_PLUGINS=quillprobe while it creates the application object.
/// Writes the probe's port to the file named by QUILLMARSH_PROBE_PORT_FILE.
class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "quillprobe.json")

public:
    QObject *create(const QString &key, const QString &) override
    {
        if (key.compare(QLatin1String("quillprobe"), Qt::CaseInsensitive) != 0)
            return nullptr;
        const QString portFile = qEnvironmentVariable("QUILLMARSH_PROBE_PORT_FILE");
        if (portFile.isEmpty()) {
            std::fputs("quillprobe: QUILLMARSH_PROBE_PORT_FILE is not set\n", stderr);
            return nullptr;
        }
        // The program's child processes inherit the environment and must not overwrite the file.
        qunsetenv("QUILLMARSH_PROBE_PORT_FILE");
        qunsetenv("QT_QPA_GENERIC_PLUGINS");
        runningServer = new ProbeServer(portFile);
        qAddPostRoutine(stopServer);
        return runningServer;
    }
};

#include "ProbePlugin.moc"
