#pragma once

#include "cli/output/EventSink.h"

#include <QByteArray>
#include <QJsonObject>

#include <functional>

/// Writes each event as one line of JSON, as docs/cli-events.schema.json describes.
class JsonEvents : public EventSink
{
public:
    using Write = std::function<void(const QByteArray &line)>;

    /// Writes the first event, "hello". Lines go to `write`, sentences to `writeSentence`; neither may block.
    JsonEvents(const QString &version, Write write, Write writeSentence);

    void device(const DeviceInfo &device) override;
    void stage(UpdateStage stage) override;
    void progress(const UpdateProgress &progress) override;
    void log(const QString &line) override;
    void result(const UpdateSummary &summary) override;
    void finding(const Finding &finding) override;
    void report(const QString &path) override;
    void message(const QString &sentence) override;

private:
    void write(const char *event, QJsonObject object);

    Write m_write;
    Write m_writeSentence;
};
