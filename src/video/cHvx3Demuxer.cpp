#include "video/cHvx3Demuxer.h"

#include <QMetaMethod>

using namespace paravue;

namespace
{

/// Texts by tag in the header.
constexpr int CharsetTag = 1;
constexpr int ClockTag = 2;

constexpr quint64 MillisecondsPerSecond = 1000;

QString charsetName(const QByteArray &label)
{
    const QByteArray name = unterminated(label);
    if (name == "-utf8")
        return QStringLiteral("UTF-8");
    if (name == "-koi8")
        return QStringLiteral("KOI-8");
    return {};
}

/// Calls the slot of \a consumer with the \a signature, if both exist. A header may announce a stream of a
/// type for which its consumer has no slot; QMetaObject::invokeMethod() would then print a warning in the
/// host's output, thousands of times for one header.
template <typename... Arguments>
void call(QObject *consumer, const char *signature, const Arguments &...arguments)
{
    if (!consumer)
        return;
    const QMetaObject *type = consumer->metaObject();
    const int slot = type->indexOfMethod(signature);
    if (slot >= 0)
        type->method(slot).invoke(consumer, Qt::DirectConnection, arguments...);
}

} // namespace

cHvx3Demuxer::cHvx3Demuxer(QObject *parent) : QObject(parent) {}

QString cHvx3Demuxer::decoderOf(const QByteArray &label)
{
    const QByteArray name = unterminated(label);
    if (name == "mp4v")
        return QStringLiteral("mpeg4");
    if (name == "mjpeg")
        return QStringLiteral("mjpeg");
    if (name == "H264")
        return QStringLiteral("h264");
    return {};
}

void cHvx3Demuxer::create()
{
    m_consumers.clear();
}

void cHvx3Demuxer::hdr_slot(HDR_T header)
{
    m_header = header;
    Q_EMIT onCreate();

    // A receiver may have made the parser read the next header; the consumers get all of this one.
    const QList<STREAM_T> streams = header.streams;
    const QList<QByteArray> texts = header.texts;
    for (const STREAM_T &stream : streams)
        createStream(stream);
    const QString charset = charsetName(texts.value(CharsetTag));
    createTitle(HeaderTextKey, charset, header.name);
    call(consumer(ClockKey), "create(QString)",
         Q_ARG(QString, QString::fromUtf8(unterminated(texts.value(ClockTag)))));
    for (const STREAM_T &stream : streams) {
        if (stream.streamType != UnusedStream)
            createTitle(TitleKey + stream.streamId, charset, stream.label2);
    }
}

void cHvx3Demuxer::idx_slot(IDX_T index)
{
    m_index = index;
    emitTime(m_index.value2 * MillisecondsPerSecond);
}

void cHvx3Demuxer::data_slot(DATA_T frame)
{
    if (!consumer(frame.streamId))
        return;
    if (frame.stream.streamType == VideoStream)
        emitTime(m_index.value2 * MillisecondsPerSecond + frame.word16);
    // A receiver of the time may have changed the consumers.
    call(consumer(frame.streamId), "append(QByteArray)", Q_ARG(QByteArray, frame.payload.value()));
}

void cHvx3Demuxer::createStream(const STREAM_T &stream)
{
    QObject *const user = consumer(stream.streamId);
    switch (stream.streamType) {
    case VideoStream:
        call(user, "create(QString)", Q_ARG(QString, decoderOf(stream.label1)));
        break;
    case PlainStream:
        call(user, "create()");
        break;
    case TextStream:
        call(user, "create(QString)", Q_ARG(QString, charsetName(stream.label3)));
        break;
    default:
        break;
    }
}

void cHvx3Demuxer::createTitle(int key, const QString &charset, const QByteArray &title)
{
    call(consumer(key), "create(QString)", Q_ARG(QString, charset));
    call(consumer(key), "append(QByteArray)", Q_ARG(QByteArray, title));
}

void cHvx3Demuxer::emitTime(quint64 milliseconds)
{
    Q_EMIT timer(milliseconds);
    call(consumer(ClockKey), "append(quint64)", Q_ARG(quint64, milliseconds));
}
