#include "harness/server/EdgeAndOrigin.h"

#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>

namespace {

const QLatin1String manifestPath("/Tessilonix/firmware/firmware-version-check-test.json");

QString edgeAddress()
{
    return QStringLiteral("https://localhost:%1").arg(EdgeAndOrigin::edgePort);
}

} // namespace

EdgeAndOrigin::EdgeAndOrigin()
{
    for (const char *name : {"origin", "edge", "certificates", "cache", "served"})
        QDir().mkpath(folder(name));
}

QString EdgeAndOrigin::manifestUrl()
{
    return edgeAddress() + manifestPath;
}

QString EdgeAndOrigin::manifestFile() const
{
    return folder("served") + manifestPath;
}

bool EdgeAndOrigin::start(const Options &options)
{
    if (!NginxProcess::runTool({NginxProcess::script("make-certificates.sh"), QStringLiteral("."),
                                QStringLiteral("edge:localhost:2"), QStringLiteral("origin:origin.test:2")},
                               folder("certificates"), &m_error))
        return false;
    QStringList origin{QStringLiteral("HOST=origin.test"), QStringLiteral("PORT=%1").arg(originPort),
                       QStringLiteral("SERVED=") + folder("served")};
    if (options.manifestSeconds > 0)
        origin.append(QStringLiteral("MANIFEST_SECONDS=%1").arg(options.manifestSeconds));
    QStringList edge{QStringLiteral("HOST=localhost"),
                     QStringLiteral("PORT=%1").arg(edgePort),
                     QStringLiteral("WORKERS=%1").arg(options.workers),
                     QStringLiteral("ORIGIN_HOST=origin.test"),
                     QStringLiteral("ORIGIN_PORT=%1").arg(originPort),
                     QStringLiteral("AUTHORITY=") + authorityFile(),
                     QStringLiteral("CACHE=") + cacheFolder(),
                     QStringLiteral("CACHE_SIZE=") + options.cacheSize,
                     QStringLiteral("CACHE_FREE=") + options.cacheFree};
    if (options.bytesPerConnection > 0)
        edge.append(QStringLiteral("EXTRA=limit_rate %1;").arg(options.bytesPerConnection));
    return configure("origin", origin) && configure("edge", edge) && startOrigin() && startEdge();
}

bool EdgeAndOrigin::configure(const char *site, const QStringList &values)
{
    QByteArray text;
    const QString name = QLatin1String(site);
    const QString here = folder(site);
    const QString certificate = folder("certificates") + QLatin1Char('/') + name;
    return NginxProcess::runTool({NginxProcess::script("site-configuration.sh"),
                                  QStringLiteral(QUILLMARSH_SITES "/") + name + QStringLiteral(".conf")},
                                 here, &m_error, &text, values) &&
           WholeFile::write(here + QStringLiteral("/nginx.conf"), text) &&
           QFile::copy(certificate + QStringLiteral(".crt"), here + QStringLiteral("/server.crt")) &&
           QFile::copy(certificate + QStringLiteral(".key"), here + QStringLiteral("/server.key"));
}

bool EdgeAndOrigin::addModel(const QString &model, const QByteArray &image)
{
    const QString file = folder("image");
    return WholeFile::write(file, image) &&
           NginxProcess::runTool({QStringLiteral(QUILLMARSH_SITES "/add-model.sh"), folder("served"),
                                  edgeAddress(), model, file},
                                 m_folder.path(), &m_error);
}

QVector<ServedRequest> EdgeAndOrigin::edgeRequests() const
{
    return ServedRequest::parse(WholeFile::read(folder("edge") + QStringLiteral("/access.log")));
}

QVector<ServedRequest> EdgeAndOrigin::originRequests() const
{
    return ServedRequest::parse(WholeFile::read(folder("origin") + QStringLiteral("/access.log")));
}

QString EdgeAndOrigin::errorLogs() const
{
    QString text;
    for (const char *name : {"edge", "origin"})
        text += QString::fromUtf8(WholeFile::read(folder(name) + QStringLiteral("/error.log")).right(4000));
    return text;
}

void EdgeAndOrigin::forgetRequests() const
{
    // nginx appends to the file, so its next line is written at the start again.
    for (const char *name : {"edge", "origin"})
        QFile::resize(folder(name) + QStringLiteral("/access.log"), 0);
}
