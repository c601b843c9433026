#include "download/BodyPlace.h"

#include "download/HttpAnswer.h"

#include <QNetworkReply>

#include <algorithm>

BodyPlace BodyPlace::of(const QNetworkReply &reply, std::optional<qint64> asked, qint64 end)
{
    BodyPlace place{0, end, end, HttpAnswer::problemOfBody(reply, asked)};
    if (!place.problem.isEmpty() || HttpAnswer::status(reply) != 206)
        return place;
    // A part that begins elsewhere, or that nobody asked for, has been reported as a problem.
    place.position = asked.value_or(0);
    const QByteArray contentRange = reply.rawHeader("Content-Range");
    if (end <= 0)
        place.wantedEnd = HttpAnswer::totalOfContentRange(contentRange).value_or(0);
    place.usableEnd = HttpAnswer::endOfContentRange(contentRange).value_or(place.wantedEnd);
    if (place.wantedEnd > 0)
        place.usableEnd = std::min(place.usableEnd, place.wantedEnd);
    return place;
}
