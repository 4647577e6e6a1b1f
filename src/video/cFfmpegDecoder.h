#pragma once

#include "video/PictureConverter.h"

#include <QByteArray>
#include <QImage>
#include <QObject>

#include <deque>
#include <memory>

namespace paravue
{
class CodecStream;
class EventLoopBudget;
} // namespace paravue

/// Decodes a compressed video stream into images.
///
/// Idle until create() has succeeded. Every create() starts anew, for a stream that begins.
class cFfmpegDecoder : public QObject
{
    Q_OBJECT

public:
    explicit cFfmpegDecoder(QObject *parent = nullptr);
    ~cFfmpegDecoder() override;

    /// From now on create() and append() do what there is time for in this turn of the event loop. The rest
    /// is done in order in the turns that follow, a step at a time together with all other decoders, so that
    /// the window answers keys whatever has been appended; pictures that would take too long are dropped
    /// (LiveLimits). To be called before them.
    void workInTurns();
    /// Whether something is left to do; until idle() is emitted, whoever can should append no more.
    bool isBusy() const { return !m_tasks.empty(); }

Q_SIGNALS:
    /// A decoded picture, in QImage::Format_RGB32 and in the proportions that it is to be seen in. It shares
    /// its pixels with the pictures that follow: who keeps it copies it.
    void onFrame(const QImage &image);
    /// All that was asked for is done.
    void idle();

public Q_SLOTS:
    /// Opens the decoder that libavcodec knows as \a format, such as "h264"; true on success. In turns: true
    /// when there is one.
    bool create(const QString &format);
    /// Decodes \a bytes, one or more whole coded pictures, and emits onFrame() for each before it returns.
    /// What cannot be decoded, or is larger than VideoLimits.h allows, is dropped without a word; the
    /// pictures come again when the stream is whole again. A receiver of onFrame() may append, too; its bytes
    /// come after those that are being decoded.
    void append(const QByteArray &bytes);

private:
    /// A stream to open, or bytes of it.
    struct Task {
        bool opens;
        QByteArray bytes;
    };

    void addTask(const Task &task);
    bool step();
    void beginTask();
    void open(const QByteArray &name);
    void decodeOn();
    void convertPicture();
    void showPicture();

    std::deque<Task> m_tasks; ///< the first one may be under way
    bool m_begun = false;
    bool m_working = false;
    bool m_hasPicture = false; ///< decoded and not converted yet
    QImage m_image;            ///< converted and not shown yet
    std::unique_ptr<paravue::CodecStream> m_stream;
    paravue::PictureConverter m_converter;
    std::shared_ptr<paravue::EventLoopBudget> m_budget; ///< null when the work is done at once
};
