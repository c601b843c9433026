#include "checks/ManifestFindings.h"

#include "checks/ImageFindings.h"
#include "checks/Texts.h"
#include "checks/WebRequest.h"
#include "update/FirmwareManifest.h"

namespace {

const QLatin1String versionsKey("CurrentVersion");

Finding address(const QString &what, const QJsonValue &value, Finding::Verdict whenMissing)
{
    const QString remedy = Texts::pick("Set it to an http or https address.", "请填写 http 或 https 地址。");
    if (value.isUndefined())
        return {what, whenMissing, Texts::pick("The key is missing.", "缺少该键。"), remedy};
    if (!value.isString())
        return Findings::problem(what, Texts::pick("The value is not a string.", "该值不是字符串。"), remedy);
    if (!WebRequest::isAddress(value.toString()))
        return Findings::problem(
            what,
            Texts::pick("\"%1\" is not an address.", "\"%1\" 不是地址。").arg(value.toString().left(200)),
            remedy);
    return Findings::ok(what, value.toString());
}

} // namespace

Finding ManifestFindings::manifest(const QByteArray &json, QJsonObject *root)
{
    const QString what = QStringLiteral("manifest");
    const FirmwareManifest::Parsed parsed = FirmwareManifest::parse(json);
    if (!parsed.ok)
        return Findings::problem(what,
                                 Texts::pick("The manifest is not a JSON object.", "清单不是 JSON 对象。"),
                                 Texts::pick("Correct the manifest.", "请更正清单。"));
    *root = parsed.root;
    const QJsonValue versions = parsed.root.value(versionsKey);
    if (!versions.isObject())
        return Findings::problem(
            what, Texts::pick("\"CurrentVersion\" is not an object.", "\"CurrentVersion\" 不是对象。"),
            Texts::pick("List the models below it.", "请在其中列出型号。"));
    const int models = versions.toObject().size();
    if (models == 0)
        return Findings::problem(
            what, Texts::pick("The manifest names no model.", "清单中没有型号。"),
            Texts::pick("List the models below \"CurrentVersion\".", "请在 \"CurrentVersion\" 中列出型号。"));
    return Findings::ok(what, Texts::pick("%1 models.", "%1 个型号。").arg(models));
}

Finding ManifestFindings::entryFor(const QJsonObject &root, const QString &model)
{
    const QString what = QStringLiteral("manifest-entry");
    const QString url = FirmwareManifest::fileAddress(root, model).url;
    const QString remedy = Texts::pick("The maker has to add it, or write your own image with --file.",
                                       "需由厂商添加,或用 --file 写入您自己的镜像。");
    if (url.isEmpty())
        return Findings::problem(
            what, Texts::pick("The manifest has no address for %1.", "清单中没有 %1 的地址。").arg(model),
            remedy);
    if (!WebRequest::isAddress(url))
        return Findings::problem(
            what, Texts::pick("\"%1\" is not an address.", "\"%1\" 不是地址。").arg(url.left(200)), remedy);
    return Findings::ok(what, Texts::pick("%1 is at %2", "%1 位于 %2").arg(model, url));
}

QVector<Finding> ManifestFindings::entry(const QString &model, const QJsonValue &entry, bool isKnownModel)
{
    QVector<Finding> findings;
    if (!isKnownModel)
        findings.append(Findings::warning(
            model, Texts::pick("The model table does not know this model.", "型号表中没有该型号。"),
            Texts::pick("Check the name; capitals count.", "请检查名称,区分大小写。")));
    if (!entry.isObject()) {
        findings.append(Findings::problem(model,
                                          Texts::pick("The entry is not an object.", "该条目不是对象。"),
                                          Texts::pick("Give it \"fileURL\", \"downloadURL\" and \"md5\".",
                                                      "请填写 \"fileURL\"、\"downloadURL\" 和 \"md5\"。")));
        return findings;
    }
    const QJsonObject object = entry.toObject();
    findings.append(address(model + QLatin1String("/fileURL"), object.value(QLatin1String("fileURL")),
                            Finding::Verdict::Problem));
    // Only a warning: the chooser shows the model without this key as well.
    findings.append(address(model + QLatin1String("/downloadURL"), object.value(QLatin1String("downloadURL")),
                            Finding::Verdict::Warning));
    const QJsonValue sum = object.value(QLatin1String("md5"));
    const QString sumKey = model + QLatin1String("/md5");
    if (sum.isString())
        findings.append(ImageFindings::sum(sumKey, sum.toString()));
    else
        findings.append(Findings::problem(
            sumKey,
            sum.isUndefined() ? Texts::pick("The key is missing.", "缺少该键。")
                              : Texts::pick("The value is not a string.", "该值不是字符串。"),
            Texts::pick("Set it to the MD5 sum of the image.", "请填写镜像的 MD5。")));
    return findings;
}
