#include "video/cFfmpegDecoder.h"

#include "video/CodecStream.h"

#include <QPointer>

#include <utility>

using paravue::CodecStream;

cFfmpegDecoder::cFfmpegDecoder(QObject *parent) : QObject(parent) {}

cFfmpegDecoder::~cFfmpegDecoder() = default;

bool cFfmpegDecoder::create(const QString &format)
{
    m_pending.clear();
    m_converter.reset();
    m_stream = CodecStream::open(format.toLatin1());
    return m_stream != nullptr;
}

void cFfmpegDecoder::append(const QByteArray &bytes)
{
    if (!m_stream)
        return;
    m_pending.append(bytes);
    if (m_decoding)
        return;
    // A receiver may begin another stream or destroy this decoder.
    const QPointer<cFfmpegDecoder> self(this);
    while (self && !m_pending.isEmpty()) {
        m_decoding = true;
        const auto stream = m_stream;
        stream->decode(std::exchange(m_pending, {}), [&](const AVFrame &picture) {
            const QImage image = m_converter.convert(picture);
            if (!image.isNull())
                Q_EMIT onFrame(image);
            return self && m_stream == stream;
        });
        if (self)
            m_decoding = false;
    }
}
