#pragma once

#include <QJsonObject>
#include <QString>

/// The two kinds of answer that servers of JSON lines give: {"ok":true,...} and {"ok":false,"error":...}.
namespace Answer {

QJsonObject success(QJsonObject fields = {});
QJsonObject failure(const QString &error);

} // namespace Answer
