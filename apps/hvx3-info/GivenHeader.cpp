#include "GivenHeader.h"

#include "InfoText.h"
#include "Recording.h"
#include "video/VideoLimits.h"
#include "video/cHvx3Parser.h"

#include <QtEndian>

#include <limits>
#include <optional>

namespace paravue
{

namespace
{

constexpr qsizetype FixedSize = 8; // in front of the name
constexpr quint8 TaggedTexts = 8;

template <typename Number>
void append(QByteArray &bytes, Number number)
{
    const Number wire = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&wire), sizeof wire);
}

QByteArray terminated(const QByteArray &text)
{
    return unterminated(text) + '\0';
}

QByteArray bytesOf(const HDR_T &header)
{
    QByteArray body = terminated(header.name);
    for (const STREAM_T &stream : header.streams.value()) {
        append(body, stream.streamId);
        append(body, stream.streamType);
        for (const QByteArray &label : {stream.label1.value(), stream.label2.value(), stream.label3.value()})
            body += terminated(label);
    }
    const qsizetype headerLength = FixedSize + body.size();
    QByteArray texts;
    for (quint8 tag = 1; tag <= TaggedTexts; ++tag) {
        const QByteArray text = header.texts.value().value(tag);
        if (text.isEmpty())
            continue;
        append(texts, tag);
        texts += terminated(text);
    }
    QByteArray bytes;
    append(bytes, Hvx3HeaderMagic);
    append(bytes, quint16(headerLength));
    append(bytes, quint16(texts.size()));
    return bytes + body + texts;
}

} // namespace

QByteArray headerWithCodec(const QByteArray &codec)
{
    STREAM_T stream;
    stream.streamType = VideoStream;
    stream.label1 = codec;
    HDR_T header;
    header.streams = QList<STREAM_T>{stream};
    return bytesOf(header);
}

QByteArray headerOf(const QString &recording)
{
    cHvx3Parser parser;
    parser.setMaxFrameSize(MaxFrameBytes);
    std::optional<HDR_T> found;
    QObject::connect(&parser, &cHvx3Parser::onHDR, &parser, [&found](const HDR_T &header) {
        if (!found)
            found = header;
    });
    readRecording(recording, [&](const QByteArray &piece) {
        parser.append(piece);
        return !found;
    });
    const QByteArray bytes = found ? bytesOf(*found) : QByteArray();
    if (bytes.isEmpty() || bytes.size() > std::numeric_limits<quint16>::max())
        throw MediaError(InfoText::tr("there is no usable header in %1").arg(recording), ExitCode::BadData);
    return bytes;
}

} // namespace paravue
