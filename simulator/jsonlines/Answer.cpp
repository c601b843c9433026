#include "simulator/jsonlines/Answer.h"

QJsonObject Answer::success(QJsonObject fields)
{
    fields.insert(QLatin1String("ok"), true);
    return fields;
}

QJsonObject Answer::failure(const QString &error)
{
    return {{QLatin1String("ok"), false}, {QLatin1String("error"), error}};
}
