#include "update/ChosefirmwareWidget.h"

#include "download/HttpAnswer.h"
#include "support/SpokenText.h"
#include "support/log/Reporter.h"
#include "support/process/ShutdownFlag.h"
#include "update/FirmwareManifest.h"

#include <QCloseEvent>
#include <QDebug>
#include <QEventLoop>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

ChosefirmwareWidget::ChosefirmwareWidget(const QString &manifestUrl, QWidget *parent, Reporter *reporter)
    : QWidget(parent)
{
    connect(this, &ChosefirmwareWidget::sigSetHide, this, &ChosefirmwareWidget::onSetHide);
    setObjectName(QStringLiteral("firmwareChooser"));
    setWindowTitle(QStringLiteral("选择你的设备"));
    setAccessibleName(spoken("Choose your device", "选择你的设备"));
    setFixedSize(200, 270);
    setWindowFlags(Qt::Window | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    // Centred on the screen, because it has no parent.
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
    fetchModels(manifestUrl, reporter);
    buildList();
}

void ChosefirmwareWidget::fetchModels(const QString &manifestUrl, Reporter *reporter)
{
    QNetworkAccessManager manager;
    QNetworkReply *reply = HttpAnswer::get(manager, HttpAnswer::request(QUrl(manifestUrl)));
    reply->setReadBufferSize(HttpAnswer::readBufferSize);
    QByteArray body;
    const auto isTooLarge = [&body] {
        return body.size() > HttpAnswer::manifestLimit;
    };
    const auto read = [&] {
        body += reply->readAll();
        if (isTooLarge())
            reply->abort();
    };
    QEventLoop loop;
    const ShutdownFlag &flag = ShutdownFlag::instance();
    connect(reply, &QNetworkReply::readyRead, &loop, read);
    connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    if (!flag.isRaised())
        loop.exec();
    if (!reply->isFinished()) {
        reply->abort();
        return;
    }
    if (!isTooLarge())
        read();
    reply->deleteLater();

    if (isTooLarge() && reporter)
        reporter->log(QStringLiteral("The list of models cannot be used: ") + HttpAnswer::tooLarge());
    const QString problem =
        isTooLarge() ? HttpAnswer::tooLarge() : HttpAnswer::problemOfWhole(*reply, body.size());
    if (!problem.isEmpty()) {
        qDebug().noquote() << "请求错误:" << problem;
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject()) {
        qDebug() << "解析 JSON 失败";
        return;
    }
    m_models = FirmwareManifest::downloadUrls(document.object());
    qDebug() << "设备名称及其下载地址:";
    for (auto model = m_models.cbegin(); model != m_models.cend(); ++model)
        qDebug().noquote() << "设备名称:" << model.key() << "-> 下载链接:" << model.value();
}

void ChosefirmwareWidget::buildList()
{
    auto *models = new QWidget;
    auto *column = new QVBoxLayout(models);
    for (auto model = m_models.cbegin(); model != m_models.cend(); ++model) {
        auto *button = new QPushButton(model.key());
        button->setObjectName(QLatin1String("choose ") + model.key());
        connect(button, &QPushButton::clicked, this, [this, button] { pick(button->text()); });
        column->addWidget(button);
    }
    auto *area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setWidget(models);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(area);
}

void ChosefirmwareWidget::pick(const QString &name)
{
    m_chosenName = name;
    qDebug().noquote() << "选中的固件:" << name;
    hide();
    emit sigSetHide(true);
}

QString ChosefirmwareWidget::waitForChoice()
{
    QEventLoop loop;
    const ShutdownFlag &flag = ShutdownFlag::instance();
    connect(
        this, &ChosefirmwareWidget::sigSetHide, &loop,
        [&loop](bool close) {
            if (close)
                loop.quit();
        },
        Qt::QueuedConnection);
    connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    // The window is shown after the wait was prepared, so that no answer is lost.
    emit sigSetHide(false);
    if (!flag.isRaised())
        loop.exec();
    return m_chosenName;
}

void ChosefirmwareWidget::onSetHide(bool close)
{
    setVisible(!close);
}

void ChosefirmwareWidget::closeEvent(QCloseEvent *event)
{
    event->accept();
    emit sigSetHide(true);
}
