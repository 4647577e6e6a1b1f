#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>

namespace paravue::fuzz
{

/// A consumer of one key of the demuxer, with every slot that a demuxer calls.
class StreamConsumer : public QObject
{
    Q_OBJECT

public:
    struct Call {
        enum Kind { CreateWithText, CreatePlain, AppendBytes, AppendTime } kind;
        QString text;
        QByteArray bytes;
        quint64 milliseconds = 0;
    };
    using Handler = std::function<void(int key, const Call &call)>;

    StreamConsumer(int key, Handler handler);

public Q_SLOTS:
    void create(const QString &text);
    void create();
    void append(const QByteArray &bytes);
    void append(quint64 milliseconds);

private:
    void handle(const Call &call);

    int m_key;
    Handler m_handler;
};

} // namespace paravue::fuzz
