#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/video/Hvx3Writer.h"
#include "recorder/video/VideoFaults.h"
#include "recorder/video/VideoSettings.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

namespace recorder
{

class RecordFile;
class VideoSource;

/// Takes a video stream, from its header on.
class VideoSink
{
public:
    virtual ~VideoSink() = default;

    /// False while much was not taken yet; then the stream goes on with its next key picture.
    virtual bool isReady() const = 0;
    virtual void write(const QByteArray &bytes) = 0;
    /// The stream ends.
    virtual void end() = 0;
};

/// The recorder's live video: one stream, encoded once, for all who watch it.
///
/// It begins, for each of them, with the header, an index record and a key picture. Each second follow an
/// index record, a record of the clock and a key picture. While nobody watches nothing is encoded.
///
/// The streams: 0 the pictures; 1 texts about what happens; 2 texts "pan,tilt,zoom", whenever the camera
/// turns and first of all; 3 the clock (type 2, each second the milliseconds since 1970 as 8 bytes,
/// little-endian). Texts are UTF-8 and end with their frame.
class VideoService : public QObject
{
    Q_OBJECT

public:
    enum StreamId : quint8 { PictureStream = 0, EventStream = 1, PositionStream = 2, ClockStream = 3 };

    /// Milliseconds since 1970 (UTC).
    using Clock = std::function<qint64()>;
    /// Obeys a line of a client; returns what is wrong with it.
    using CommandHandler = std::function<QString(const QByteArray &line)>;

    explicit VideoService(QObject *parent = nullptr);
    ~VideoService() override;

    /// Whether FFmpeg on this computer has an encoder for it.
    static bool canEncode(VideoCodec codec);
    /// H.264 where it can be encoded, else MPEG-4.
    static VideoSettings defaultSettings();

    /// Takes effect with the next picture, for those who watch already as a stream that begins anew. False,
    /// with \a fault set and nothing changed, when nothing can be encoded like that.
    bool setSettings(const VideoSettings &settings, QString *fault = nullptr);
    const VideoSettings &settings() const { return m_settings; }

    /// Shows a video file, again and again, in place of the test picture; an empty path brings that back.
    /// False, with \a fault set and nothing changed, when the file cannot be played.
    bool setFile(const QString &path, QString *fault = nullptr);
    /// From the next picture on.
    void setFaults(const VideoFaults &faults) { m_faults = FaultInjector(faults); }

    /// Keeps the stream in a new file, from its header on, whether somebody else watches or not; a recording
    /// before ends. False, with \a fault set and nothing changed, when the file exists or cannot be written.
    bool record(const QString &path, QString *fault = nullptr);
    void stopRecording() { m_recording.reset(); }

    /// The present picture as a JPEG; empty when it cannot be encoded. Of a file it is the last picture that
    /// can be decoded by itself, and its first one while nobody watches.
    QByteArray snapshot() const;
    /// The same of all that the camera of the test picture can turn to.
    QByteArray overview() const;

    /// The clock of the stream and of the test picture; the computer's by default.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    /// Where the test picture's camera looks. Who watches is told with the next picture.
    void setPose(const CameraPose &pose);
    const CameraPose &pose() const { return m_pose; }

    /// Sends a text with the next picture, to those who watch.
    void sendText(quint8 streamId, const QString &text);
    /// The same, and it is told to everybody who begins to watch until another one is set.
    void setStateText(quint8 streamId, const QString &text);

    /// What is done with the lines that watching clients send.
    void setCommandHandler(CommandHandler handler) { m_commandHandler = std::move(handler); }
    /// What is wrong with the line; empty when it was obeyed.
    QString handleCommand(const QByteArray &line) const;

    /// The stream goes there until the sink is gone.
    void watch(const std::shared_ptr<VideoSink> &sink);
    int watcherCount() const;
    /// Whether pictures are made now.
    bool isStreaming() const { return m_source != nullptr; }
    /// How many pictures were encoded since the service was made.
    qint64 encodedPictures() const { return m_encodedPictures; }

Q_SIGNALS:
    void logged(const QString &line);
    /// Something that the user asked for does not work: a recording or a file that is shown. Logged as well.
    void failed(const QString &line);

private:
    struct Watcher {
        std::weak_ptr<VideoSink> sink;
        bool isStarted = false;
        QByteArray late = {}; ///< what a stall holds back
    };
    /// What goes out with one picture.
    struct Burst {
        QByteArray common; ///< for those who watch already
        QByteArray begin;  ///< for those who begin with it; empty when it is no key picture
    };

    QByteArray fileSnapshot() const;
    void tick();
    void schedule();
    std::unique_ptr<VideoSource> sourceFor(const VideoSettings &settings, const QString &file,
                                           QString *fault) const;
    bool useSource(const VideoSettings &settings, const QString &file, QString *fault);
    bool openSource();
    void changeByFault();
    void logFault(const QString &what);
    void sendEvent(qint64 second);
    void endStream();
    bool forgetGone();
    bool somebodyBegins() const;
    Burst nextBurst();
    QByteArray header() const;
    QByteArray indexAndClock(qint64 time);
    QByteArray textRecords(quint8 streamId, const QByteArray &text) const;
    void send(const Burst &burst);
    void sendLate();
    void checkSource();
    void checkRecording();
    void fail(const QString &line);

    VideoSettings m_settings = defaultSettings();
    VideoSettings m_current = m_settings; // differs when a fault has changed it
    QString m_file;
    FaultInjector m_faults;
    std::shared_ptr<RecordFile> m_recording;
    CameraPose m_pose;
    Clock m_clock;
    CommandHandler m_commandHandler;
    std::unique_ptr<VideoSource> m_source; // while somebody watches
    QString m_sourceFault;                 // the last one that was told
    bool m_beginsAnew = false;
    bool m_repeatsHeader = false;
    bool m_isStalled = false;
    QList<Watcher> m_watchers;
    QByteArray m_texts; // records that go out with the next picture
    std::map<quint8, QByteArray> m_stateTexts;
    qint64 m_second = -1; // of the last index record
    quint32 m_indexNumber = 0;
    qint64 m_encodedPictures = 0;
    QTimer m_timer;
    QElapsedTimer m_elapsed;
    double m_due = 0; // when the next picture is, in milliseconds of m_elapsed
};

} // namespace recorder
