#include "checks/ServerCheck.h"

#include "checks/ManifestFindings.h"
#include "checks/Texts.h"
#include "checks/WebRequest.h"
#include "download/HttpAnswer.h"

#include <QFile>
#include <QFileInfo>

namespace {

const QLatin1String manifestName("manifest");

} // namespace

ServerCheck::Manifest ServerCheck::fetchManifest(const QString &address)
{
    const QString server = QStringLiteral("server");
    const WebAnswer answer = WebRequest::fetch(address);
    if (answer.status == 0)
        return {{Findings::problem(server, Texts::pick("%1: %2.", "%1:%2。").arg(address, answer.problem),
                                   Texts::pick("Check the network and the server.", "请检查网络和服务器。"))},
                {}};
    Manifest manifest;
    manifest.findings.append(Findings::ok(server, Texts::pick("It answers.", "服务器有响应。")));
    if (!answer.problem.isEmpty())
        manifest.findings.append(Findings::problem(
            manifestName,
            Texts::pick("The manifest cannot be fetched: %1.", "无法获取清单:%1。").arg(answer.problem),
            Texts::pick("Put the manifest at %1.", "请将清单放到 %1。").arg(address)));
    else
        manifest.findings.append(ManifestFindings::manifest(answer.body, &manifest.root));
    return manifest;
}

ServerCheck::Manifest ServerCheck::readManifest(const QString &file)
{
    QFile manifestFile(file);
    // Opening a named pipe would block.
    if (!QFileInfo(file).isFile() || !manifestFile.open(QIODevice::ReadOnly))
        return {
            {Findings::problem(manifestName, Texts::pick("%1 cannot be read.", "无法读取 %1。").arg(file))},
            {}};
    const QByteArray json = manifestFile.read(HttpAnswer::manifestLimit + 1);
    if (json.size() > HttpAnswer::manifestLimit)
        return {{Findings::problem(manifestName, file + QLatin1String(": ") + HttpAnswer::tooLarge())}, {}};
    Manifest manifest;
    manifest.findings.append(ManifestFindings::manifest(json, &manifest.root));
    return manifest;
}

ImageFindings::Image ServerCheck::checkImage(const QString &what, const QString &address)
{
    const WebAnswer whole = WebRequest::head(address, std::nullopt);
    WebAnswer part;
    if (whole.problem.isEmpty())
        part = WebRequest::head(address, ImageFindings::trialPart);
    return ImageFindings::image(what, whole, part);
}

Finding ServerCheck::checkAddress(const QString &what, const QString &address)
{
    const WebAnswer answer = WebRequest::head(address, std::nullopt);
    if (answer.problem.isEmpty())
        return Findings::ok(what, Texts::pick("It answers.", "有响应。"));
    return Findings::problem(
        what, Texts::pick("%1: %2.", "%1:%2。").arg(address, answer.problem),
        Texts::pick("Correct the address, or put the file there.", "请更正地址或放置该文件。"));
}
