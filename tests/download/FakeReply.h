#pragma once

#include <QNetworkReply>

/// A reply with any status that counts the calls of ignoreSslErrors().
class FakeReply : public QNetworkReply
{
public:
    explicit FakeReply(int status)
    {
        if (status > 0)
            setAttribute(QNetworkRequest::HttpStatusCodeAttribute, status);
    }
    void announce(qint64 length) { setHeader(QNetworkRequest::ContentLengthHeader, length); }
    void setHeaderAsSent(const QByteArray &name, const QByteArray &value) { setRawHeader(name, value); }
    void abort() override {}
    void ignoreSslErrors() override { ++ignored; }

    int ignored = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
};
