#include "report/ReportText.h"

#include "checks/Texts.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

QByteArray ReportText::of(QJsonObject content, const QJsonObject &bus)
{
    // Members are written in the order of their names: "about" comes first.
    content.insert(
        QStringLiteral("about"),
        QJsonArray{
            QStringLiteral("A report of quillmarsh for support: what the program sees on this computer."),
            QStringLiteral("The program wrote it to this file only and sent it nowhere. Read it before you "
                           "pass it on."),
            QStringLiteral("The home folder is replaced by <home>, the user's name by <user>. It holds no "
                           "firmware image."),
            QStringLiteral("本报告仅保存在此文件中,未发送到任何地方。主文件夹和用户名已被替换。")});
    content.insert(QStringLiteral("format"), QStringLiteral("quillmarsh-report"));
    content.insert(QStringLiteral("formatVersion"), formatVersion);
    content.insert(QStringLiteral("bus"), bus);
    return QJsonDocument(content).toJson(QJsonDocument::Indented);
}

QString ReportText::save(const QByteArray &report, const QString &path)
{
    // Opening a named pipe would block, and a report must not be written to a device.
    const QFileInfo target(path);
    if (target.exists() && !target.isFile())
        return QStringLiteral("not a plain file");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (file.write(report) != report.size() || !file.commit())
        return file.errorString();
    return {};
}

QString ReportText::describeSaving(const QString &path, const QString &problem)
{
    const QString file = QDir::toNativeSeparators(path);
    return problem.isEmpty()
               ? Texts::pick("The report is in %1. Nothing was sent anywhere.",
                             "报告已保存到 %1,未发送到任何地方。")
                     .arg(file)
               : Texts::pick("The report cannot be written to %1: %2.", "无法将报告写入 %1:%2。")
                     .arg(file, problem);
}

QString ReportText::proposedName()
{
    return QStringLiteral("quillmarsh-report-%1.json")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}
