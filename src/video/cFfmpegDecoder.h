#pragma once

#include "video/PictureConverter.h"

#include <QByteArray>
#include <QImage>
#include <QObject>

#include <memory>

namespace paravue
{
class CodecStream;
}

/// Decodes a compressed video stream into images.
///
/// Idle until create() has succeeded. Every create() starts anew, for a stream that begins.
class cFfmpegDecoder : public QObject
{
    Q_OBJECT

public:
    explicit cFfmpegDecoder(QObject *parent = nullptr);
    ~cFfmpegDecoder() override;

Q_SIGNALS:
    /// A decoded picture, in QImage::Format_RGB32 and in the proportions that it is to be seen in. It shares
    /// its pixels with the pictures that follow: who keeps it copies it.
    void onFrame(const QImage &image);

public Q_SLOTS:
    /// Opens the decoder that libavcodec knows as \a format, such as "h264"; true on success.
    bool create(const QString &format);
    /// Decodes \a bytes, one or more whole coded pictures, and emits onFrame() for each before it returns.
    /// What cannot be decoded is dropped without a word; the pictures come again when the stream is whole
    /// again. A receiver of onFrame() may append, too; its bytes come after those that are being decoded.
    void append(const QByteArray &bytes);

private:
    std::shared_ptr<paravue::CodecStream> m_stream;
    paravue::PictureConverter m_converter;
    QByteArray m_pending; ///< not given to the codec yet
    bool m_decoding = false;
};
