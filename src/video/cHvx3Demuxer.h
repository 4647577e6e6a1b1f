#pragma once

#include "video/Hvx3Records.h"

#include <QMap>
#include <QObject>
#include <QPointer>

/// Passes the records of a video stream on, each stream to its own consumer.
///
/// A consumer is any object with the slots below. They are called directly, and what they return is ignored.
/// The demuxer does not own the consumers and skips those that were destroyed. Streams without a consumer are
/// dropped.
///
/// | Key                | Consumer of              | "create" with     | "append" with                   |
/// |--------------------|--------------------------|-------------------|---------------------------------|
/// | stream id, 0 - 255 | video (type 1)           | QString, decoder  | QByteArray, a frame             |
/// |                    | streams of type 2        | nothing           | QByteArray, a frame             |
/// |                    | text (type 4)            | QString, charset  | QByteArray, a text              |
/// | HeaderTextKey      | the name in the header   | QString, charset  | QByteArray, the name            |
/// | ClockKey           | the time of the stream   | QString, a text   | quint64, milliseconds           |
/// | TitleKey + id      | the title of each stream | QString, charset  | QByteArray, the title           |
///
/// A decoder is "mpeg4", "mjpeg" or "h264", a charset "UTF-8" or "KOI-8"; each is empty when the stream's own
/// name for it is not known. Names, titles and texts have the zero byte that ends them in the stream.
class cHvx3Demuxer : public QObject
{
    Q_OBJECT

public:
    using Consumers = QMap<int, QPointer<QObject>>;
    enum Key { HeaderTextKey = 998, ClockKey = 999, TitleKey = 1000 };

    explicit cHvx3Demuxer(QObject *parent = nullptr);

    /// The decoder of video whose codec the recorder calls \a label; empty when it is not known.
    static QString decoderOf(const QByteArray &label);

    /// To be filled before the stream begins: consumers()[streamId] = decoder.
    Consumers &consumers() { return m_consumers; }
    /// The last header; one without streams before the first.
    const HDR_T &header() const { return m_header; }

Q_SIGNALS:
    /// The time of the stream: at each index record and before each frame of a video stream with a consumer.
    void timer(quint64 milliseconds);
    /// A header was received; the slots of the consumers are called after this.
    void onCreate();

public Q_SLOTS:
    /// Removes all consumers.
    void create();
    void hdr_slot(HDR_T header);
    void idx_slot(IDX_T index);
    void data_slot(DATA_T frame);

private:
    QObject *consumer(int key) const { return m_consumers.value(key); }
    void createStream(const STREAM_T &stream);
    void createTitle(int key, const QString &charset, const QByteArray &title);
    void emitTime(quint64 milliseconds);

    Consumers m_consumers;
    HDR_T m_header;
    IDX_T m_index;
};
