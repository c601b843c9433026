#include "checks/ImageFindings.h"

#include "checks/Texts.h"
#include "download/HttpAnswer.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// A download is cut into ten parts of at least one byte.
constexpr qint64 smallestSize = 10;
/// The ends of parts are computed as signed 32-bit numbers.
constexpr qint64 sizeLimit = qint64{1} << 31;

QString problemOf(const WebAnswer &answer)
{
    if (!answer.problem.isEmpty())
        return answer.problem;
    if (answer.status < 200 || answer.status > 299)
        return QStringLiteral("status %1").arg(answer.status);
    return {};
}

QString problemOfSize(qint64 size)
{
    if (size < smallestSize)
        return Texts::pick("The image has %1 bytes: fewer than 10.", "镜像只有 %1 字节:少于 10。").arg(size);
    if (size >= sizeLimit)
        return Texts::pick("The image has %1 bytes: 2 GiB or more.", "镜像有 %1 字节:达到 2 GiB。").arg(size);
    return {};
}

/// Returns why the answer to the trial part cannot be used; empty if it can.
QString problemOfPart(const WebAnswer &part, qint64 size)
{
    QString problem = problemOf(part);
    if (!problem.isEmpty())
        return problem;
    const QString range = QString::fromLatin1(part.contentRange);
    const bool isRequestedPart =
        HttpAnswer::firstOfContentRange(part.contentRange) == ImageFindings::trialPart.start &&
        HttpAnswer::endOfContentRange(part.contentRange) == std::min(ImageFindings::trialPart.end, size) &&
        HttpAnswer::totalOfContentRange(part.contentRange) == size;
    if (isRequestedPart)
        return {};
    return range.isEmpty() ? QStringLiteral("no Content-Range")
                           : QStringLiteral("Content-Range \"%1\"").arg(range);
}

} // namespace

ImageFindings::Image ImageFindings::image(const QString &what, const WebAnswer &whole, const WebAnswer &part)
{
    const QString problem = problemOf(whole);
    if (!problem.isEmpty())
        return {Findings::problem(
                    what, Texts::pick("The image cannot be fetched: %1.", "无法获取镜像:%1。").arg(problem),
                    Texts::pick("Put the image where \"fileURL\" points.",
                                "请将镜像放到 \"fileURL\" 指向的位置。")),
                0};
    const qint64 size = whole.contentLength.value_or(0);
    if (!whole.contentLength)
        return {Findings::problem(
                    what, Texts::pick("The server does not send the image's size.", "服务器未告知镜像大小。"),
                    Texts::pick("Make the server send \"Content-Length\".",
                                "请让服务器发送 \"Content-Length\"。")),
                0};
    const QString sizeProblem = problemOfSize(size);
    if (!sizeProblem.isEmpty())
        return {Findings::problem(what, sizeProblem), size};
    const QString remedy = Texts::pick("Make the server answer a range with 206 and its \"Content-Range\".",
                                       "请让服务器以 206 和正确的 \"Content-Range\" 响应分段请求。");
    if (part.status == 200 && part.problem.isEmpty())
        return {Findings::warning(what,
                                  Texts::pick("%1 bytes; the server sends no parts, so that each of ten "
                                              "requests fetches the whole image.",
                                              "%1 字节;服务器不支持分段,十个请求都会获取整个镜像。")
                                      .arg(size),
                                  remedy),
                size};
    const QString partProblem = problemOfPart(part, size);
    if (!partProblem.isEmpty())
        return {Findings::problem(what,
                                  Texts::pick("Parts of the image are not sent as requested: %1.",
                                              "镜像分段与请求不符:%1。")
                                      .arg(partProblem),
                                  remedy),
                size};
    return {Findings::ok(what, Texts::pick("%1 bytes, sent in parts.", "%1 字节,支持分段。").arg(size)),
            size};
}

Finding ImageFindings::sum(const QString &what, const QString &sum)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9a-f]{32}\\z"));
    if (digits.match(sum).hasMatch())
        return Findings::ok(what, sum);
    const QString remedy = Texts::pick("Write the MD5 sum with 32 lower-case hexadecimal digits.",
                                       "请用 32 位小写十六进制数字书写 MD5。");
    if (digits.match(sum.toLower()).hasMatch())
        return Findings::problem(
            what,
            Texts::pick("The sum has capital letters, and the comparison is case-sensitive.",
                        "校验和含大写字母;比较时区分大小写。"),
            remedy);
    return Findings::problem(
        what, Texts::pick("\"%1\" is not an MD5 sum.", "\"%1\" 不是 MD5 校验和。").arg(sum.left(64)), remedy);
}

Finding ImageFindings::fetchedSum(const QString &what, const QString &promised, const QString &fetched)
{
    if (fetched.isEmpty())
        return Findings::problem(what, Texts::pick("The image did not arrive.", "未能下载镜像。"));
    if (fetched == promised)
        return Findings::ok(what, Texts::pick("The image has this sum.", "镜像与校验和一致。"));
    return Findings::problem(
        what, Texts::pick("The image has the sum %1.", "镜像的校验和为 %1。").arg(fetched),
        Texts::pick("Correct \"md5\", or put the right image there.", "请更正 \"md5\" 或放置正确的镜像。"));
}
