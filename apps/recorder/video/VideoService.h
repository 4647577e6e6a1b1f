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

/// A receiver of the video stream, from its header on.
class VideoSink
{
public:
    virtual ~VideoSink() = default;

    /// False while too much waits to be sent; the stream then continues with the next key picture after that.
    virtual bool isReady() const = 0;
    virtual void write(const QByteArray &bytes) = 0;
    virtual void end() = 0;
};

/// The recorder's live video: encoded once, for all watchers.
///
/// It begins, for each watcher, with the header, an index record and a key picture. Each second follow an
/// index record, a record of the clock and a key picture. Without watchers nothing is encoded.
///
/// The streams: 0 the pictures; 1 texts about events; 2 texts "pan,tilt,zoom", at the beginning and whenever
/// the camera turns; 3 the clock (type 2, each second the milliseconds since 1970 as 8 bytes, little-endian).
/// Texts are UTF-8 and end with their frame.
class VideoService : public QObject
{
    Q_OBJECT

public:
    enum StreamId : quint8 { PictureStream = 0, EventStream = 1, PositionStream = 2, ClockStream = 3 };

    /// Milliseconds since 1970 (UTC).
    using Clock = std::function<qint64()>;
    /// Executes a line of a client; returns the error, empty on success.
    using CommandHandler = std::function<QString(const QByteArray &line)>;

    explicit VideoService(QObject *parent = nullptr);
    ~VideoService() override;

    /// Whether FFmpeg on this computer has an encoder for it.
    static bool canEncode(VideoCodec codec);
    /// H.264 where it can be encoded, else MPEG-4.
    static VideoSettings defaultSettings();

    /// Takes effect with the next picture; for present watchers the stream begins anew. False, with \a fault
    /// set and nothing changed, when FFmpeg cannot encode with these settings.
    bool setSettings(const VideoSettings &settings, QString *fault = nullptr);
    const VideoSettings &settings() const { return m_settings; }

    /// Shows a video file in a loop; an empty path shows the test picture. False, with \a fault set and
    /// nothing changed, when the file cannot be played.
    bool setFile(const QString &path, QString *fault = nullptr);
    /// Takes effect with the next picture. Ends a slow time and a shift of the time.
    void setFaults(const VideoFaults &faults);

    /// Writes the stream to a new file, as a watcher of its own. An earlier recording ends. False, with \a
    /// fault set and nothing changed, when the file exists or cannot be written.
    bool record(const QString &path, QString *fault = nullptr);
    void stopRecording() { m_recording.reset(); }

    /// The present picture as JPEG; empty when it cannot be encoded. Of a video file it is the last key
    /// picture, and without watchers the first one.
    QByteArray snapshot() const;
    /// A picture of everything that the camera of the test picture can turn to, likewise.
    QByteArray overview() const;

    /// The clock of the stream and of the test picture; the computer's by default.
    void setClock(Clock clock) { m_clock = std::move(clock); }

    /// The position of the test picture's camera. It is sent to the watchers with the next picture.
    void setPose(const CameraPose &pose);
    const CameraPose &pose() const { return m_pose; }

    /// Sends a text with the next picture to the present watchers.
    void sendText(quint8 streamId, const QString &text);
    /// The same, and to later watchers at their beginning until another one is set.
    void setStateText(quint8 streamId, const QString &text);

    /// Executes the lines that watching clients send.
    void setCommandHandler(CommandHandler handler) { m_commandHandler = std::move(handler); }
    /// The error of the line; empty when it was executed.
    QString handleCommand(const QByteArray &line) const;

    /// Sends the stream to the sink until that is destroyed.
    void watch(const std::shared_ptr<VideoSink> &sink);
    int watcherCount() const;
    /// Whether pictures are made now.
    bool isStreaming() const { return m_source != nullptr; }
    /// The number of pictures since the service was created.
    qint64 encodedPictures() const { return m_encodedPictures; }

Q_SIGNALS:
    void logged(const QString &line);
    /// A recording or the video file that is shown has failed. Also logged.
    void failed(const QString &line);

private:
    struct Watcher {
        std::weak_ptr<VideoSink> sink;
        bool isStarted = false;
        QByteArray delayed = {}; ///< what is sent after the stall
    };
    /// What is sent with one picture.
    struct Burst {
        QByteArray common; ///< for watchers whose stream has begun
        QByteArray begin;  ///< for those that begin with it; empty when it is no key picture
    };

    QByteArray fileSnapshot() const;
    void tick();
    void schedule();
    std::unique_ptr<VideoSource> openSourceFor(const VideoSettings &settings, const QString &file,
                                               QString *fault) const;
    bool useSource(const VideoSettings &settings, const QString &file, QString *fault);
    bool openSource();
    void changeByFault();
    void logFault(const QString &what);
    void sendEvent(qint64 second);
    void endStream();
    bool removeClosedSinks();
    bool hasNewWatcher() const;
    Burst nextBurst();
    QByteArray header() const;
    QByteArray indexAndClock(qint64 time);
    QByteArray textRecords(quint8 streamId, const QByteArray &text) const;
    void send(const Burst &burst);
    void sendDelayed();
    void checkSource();
    void checkRecording();
    void fail(const QString &line);

    VideoSettings m_settings = defaultSettings();
    VideoSettings m_current = m_settings; // differs from m_settings when an injected fault has changed it
    QString m_file;
    FaultInjector m_faults;
    std::shared_ptr<RecordFile> m_recording;
    CameraPose m_pose;
    Clock m_clock;
    CommandHandler m_commandHandler;
    std::unique_ptr<VideoSource> m_source; // while there are watchers
    QString m_sourceFault;                 // the last one that was logged
    bool m_beginsAnew = false;
    bool m_repeatsHeader = false;
    bool m_isStalled = false;
    bool m_isSlow = false;
    qint64 m_timeShift = 0; // of the stream, in milliseconds
    QList<Watcher> m_watchers;
    QByteArray m_texts; // records that are sent with the next picture
    std::map<quint8, QByteArray> m_stateTexts;
    qint64 m_second = -1; // of the last index record
    quint32 m_indexNumber = 0;
    qint64 m_encodedPictures = 0;
    QTimer m_timer;
    QElapsedTimer m_elapsed;
    double m_due = 0; // the time of the next picture, in milliseconds of m_elapsed
};

} // namespace recorder
