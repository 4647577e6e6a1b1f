#pragma once

#include "video/PictureConverter.h"

#include <QBasicTimer>
#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace paravue
{
class CodecStream;
class EventLoopBudget;
} // namespace paravue

/// Decodes a compressed video stream into images.
///
/// Bytes before a successful create() are dropped. Each create() begins a new stream.
class cFfmpegDecoder : public QObject
{
    Q_OBJECT

public:
    explicit cFfmpegDecoder(QObject *parent = nullptr);
    ~cFfmpegDecoder() override;

    /// Makes create() and append() do only what there is time for in this turn of the event loop. The rest
    /// follows in order in later turns, in steps that all decoders share the time for (EventLoopBudget.h), so
    /// that the window answers keys whatever was appended. Pictures that would take too long are dropped
    /// (LiveLimits). To be called before create() and append().
    void workInTurns();
    /// Whether something is left to do.
    bool isBusy() const { return !m_tasks.empty(); }
    /// The memory of what waits to be decoded.
    qsizetype waitingBytes() const { return m_waitingBytes; }
    /// Leaves out bytes that have waited longer than \a limit, and those behind them up to the next key
    /// picture. Without a limit, and without workInTurns(), all are decoded.
    void setMaxWait(std::chrono::milliseconds limit) { m_maxWait = limit; }
    /// Asked in which size the picture that was decoded is wanted: an empty one stands for its own. Without
    /// an answer it is neither converted nor emitted.
    using Choice = std::function<std::optional<QSize>()>;
    void setChoice(const Choice &wantedSize) { m_wantedSize = wantedSize; }
    /// How many connections onFrame() has.
    int frameReceivers() const { return receivers(SIGNAL(onFrame(QImage))); }
    /// In turns: whether anybody sees the pictures. While nobody does, bytes are kept instead of decoded, and
    /// what they show is not emitted. They are decoded before the first ones that somebody sees, or when
    /// somebody looks and nothing further comes: then the last picture is emitted.
    void setWatch(const std::function<bool()> &isWatched) { m_isWatched = isWatched; }
    /// Leaves its memory to the \a image of a signal, so that a receiver can keep it without a copy. False
    /// when it is not the last image.
    bool release(const QImage &image) { return m_converter.release(image) || m_scaler.release(image); }
    /// The last picture in its own size when it was emitted in another one, or else a null image.
    QImage wholePicture();
    /// The size of the last decoded picture.
    QSize pictureSize() const { return m_pictureSize; }
    /// How long the last bytes have waited until their decoding began.
    std::chrono::milliseconds lastWait() const { return m_lastWait; }
    /// How many times bytes were appended that were left out.
    quint64 leftOut() const { return m_leftOut; }

Q_SIGNALS:
    /// A decoded picture, in QImage::Format_RGB32 and with square pixels. The following pictures are written
    /// into the same memory, so a receiver that keeps the image has to copy it or to release() it.
    void onFrame(const QImage &image);
    /// The same, in the size that was chosen (setChoice()).
    void onScaledFrame(const QImage &image);
    /// All that was appended is decoded.
    void idle();

public Q_SLOTS:
    /// Opens the decoder that libavcodec knows as \a format, such as "h264"; true on success. In turns: true
    /// when there is one.
    bool create(const QString &format);
    /// Decodes \a bytes, one or more whole coded pictures, and emits onFrame() for each before it returns.
    /// What cannot be decoded, or is larger than VideoLimits.h allows, is dropped silently. A receiver of
    /// onFrame() may append, too; its bytes are decoded behind those under way.
    void append(const QByteArray &bytes);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// Opens a stream (bytes are the name of its decoder) or decodes bytes of it.
    struct Task {
        bool opens;
        QByteArray bytes;
        std::chrono::steady_clock::time_point begin;
        bool isUnseen = false; ///< was held

        qsizetype size() const { return qsizetype(sizeof(Task)) + bytes.size(); }
    };

    void addTask(bool opens, const QByteArray &bytes);
    void removeTask();
    bool step();
    void beginTask();
    void noteWait(const Task &task);
    void keepParameters(const QByteArray &bytes);
    QByteArray withParameters(const QByteArray &bytes);
    bool isLate() const;
    bool isLeftOut();
    bool isHeld();
    void dropHeld();
    void releaseHeld();
    void showHeld();
    void open(const QByteArray &name);
    void decodeNext();
    void showPicture();
    bool showScaled(QSize size);

    std::deque<Task> m_tasks;
    qsizetype m_waitingBytes = 0;
    std::optional<std::chrono::milliseconds> m_maxWait;
    quint64 m_leftOut = 0;
    QSize m_pictureSize;
    std::chrono::milliseconds m_lastWait{0};
    /// Since when pictures are left out.
    std::optional<std::chrono::steady_clock::time_point> m_skippingSince;
    bool m_isDecoding = false; ///< the first task has begun
    bool m_working = false;
    bool m_hasPicture = false; ///< decoded and not shown yet
    Choice m_wantedSize;
    std::function<bool()> m_isWatched;
    std::chrono::nanoseconds m_taskTime{0};  ///< of decoding, for the first task so far
    std::chrono::nanoseconds m_usualTime{0}; ///< for the last ones, on average
    std::deque<QByteArray> m_held;
    qsizetype m_heldBytes = 0;
    QList<QByteArray> m_parameters; ///< of bytes that were not decoded
    QBasicTimer m_heldTimer;        ///< runs while bytes are held
    std::unique_ptr<paravue::CodecStream> m_stream;
    paravue::PictureConverter m_converter;
    paravue::PictureConverter m_scaler; ///< for the size that was chosen
    paravue::FrameHandle m_scaled;      ///< the last picture, while it was emitted in that size alone
    std::shared_ptr<paravue::EventLoopBudget> m_budget; ///< null when the work is done at once
};
