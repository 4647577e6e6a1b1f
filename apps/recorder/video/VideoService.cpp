#include "recorder/video/VideoService.h"

#include "recorder/files/RecorderText.h"
#include "recorder/video/FileSource.h"
#include "recorder/video/RecordFile.h"
#include "recorder/video/SnapshotEncoder.h"
#include "recorder/video/TestPicture.h"

#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace recorder
{

namespace
{

constexpr qint64 MsPerSecond = 1000;
constexpr QSize OverviewSize = {640, 360};
/// Milliseconds; pictures that are later than this are skipped.
constexpr double MaxDelayMs = 500;
constexpr int SlowFactor = 10;
constexpr qint64 TimeJumpMs = 3600 * MsPerSecond;

/// Half the size, or twice when that is too small.
QSize otherSize(QSize size)
{
    const QSize half(size.width() / 4 * 2, size.height() / 4 * 2);
    const bool isEnough = half.expandedTo(VideoSettings::MinSize) == half;
    return isEnough ? half : (size * 2).boundedTo(VideoSettings::MaxSize);
}

VideoCodec otherCodec(VideoCodec codec)
{
    do
        codec = static_cast<VideoCodec>((static_cast<int>(codec) + 1) % videoCodecNames().size());
    while (!PictureEncoder::isAvailable(codec));
    return codec;
}

QByteArray clockFrame(qint64 time)
{
    const qint64 value = qToLittleEndian(time);
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

} // namespace

VideoService::VideoService(QObject *parent)
    : QObject(parent), m_clock([] { return QDateTime::currentMSecsSinceEpoch(); })
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &VideoService::tick);
    setStateText(PositionStream, QString::fromLatin1(m_pose.text()));
    m_elapsed.start();
}

VideoService::~VideoService() = default;

bool VideoService::canEncode(VideoCodec codec)
{
    return PictureEncoder::isAvailable(codec);
}

VideoSettings VideoService::defaultSettings()
{
    VideoSettings settings;
    if (!canEncode(settings.codec))
        settings.codec = VideoCodec::Mpeg4;
    return settings;
}

bool VideoService::setSettings(const VideoSettings &settings, QString *fault)
{
    if (!useSource(settings, m_file, fault))
        return false;
    m_settings = settings;
    return true;
}

bool VideoService::setFile(const QString &path, QString *fault)
{
    if (!useSource(m_settings, path, fault))
        return false;
    m_file = path;
    return true;
}

void VideoService::setFaults(const VideoFaults &faults)
{
    m_faults = FaultInjector(faults);
    m_isSlow = false;
    m_timeShift = 0;
}

bool VideoService::record(const QString &path, QString *fault)
{
    QString reason;
    const std::shared_ptr<RecordFile> recording = RecordFile::create(path, reason);
    if (fault)
        *fault = reason;
    if (!recording)
        return false;
    m_recording = recording;
    watch(m_recording);
    return true;
}

QByteArray VideoService::snapshot() const
{
    if (!m_file.isEmpty())
        return fileSnapshot();
    return encodeSnapshot(m_current.size,
                          [this](PicturePainter &painter) { paintTestPicture(painter, m_pose, m_clock()); });
}

QByteArray VideoService::fileSnapshot() const
{
    constexpr int MaxPictures = 100;
    if (const QByteArray picture = m_source ? m_source->snapshot() : QByteArray(); !picture.isEmpty())
        return picture;
    const std::unique_ptr<VideoSource> source = openSourceFor(m_current, m_file, nullptr);
    QByteArray picture;
    for (int tries = 0; source && picture.isEmpty() && tries < MaxPictures; ++tries) {
        source->next(true, m_pose, 0);
        picture = source->snapshot();
    }
    return picture;
}

QByteArray VideoService::overview() const
{
    return encodeSnapshot(OverviewSize,
                          [this](PicturePainter &painter) { paintOverview(painter, m_clock()); });
}

void VideoService::setPose(const CameraPose &pose)
{
    if (pose == m_pose)
        return;
    m_pose = pose;
    setStateText(PositionStream, QString::fromLatin1(m_pose.text()));
}

QString VideoService::handleCommand(const QByteArray &line) const
{
    return m_commandHandler ? m_commandHandler(line) : QStringLiteral("unknown command");
}

void VideoService::sendText(quint8 streamId, const QString &text)
{
    if (m_source)
        m_texts += textRecords(streamId, text.toUtf8());
}

void VideoService::setStateText(quint8 streamId, const QString &text)
{
    m_stateTexts[streamId] = text.toUtf8();
    sendText(streamId, text);
}

void VideoService::watch(const std::shared_ptr<VideoSink> &sink)
{
    m_watchers.append({sink});
    if (!m_timer.isActive()) {
        m_due = double(m_elapsed.elapsed());
        m_timer.start(0);
    }
}

int VideoService::watcherCount() const
{
    return int(std::count_if(m_watchers.begin(), m_watchers.end(),
                             [](const Watcher &watcher) { return !watcher.sink.expired(); }));
}

void VideoService::tick()
{
    if (!removeClosedSinks() || (!m_source && !openSource())) {
        endStream();
        return;
    }
    sendDelayed();
    m_faults.nextPicture();
    changeByFault();
    m_isStalled = m_faults.isDue(VideoFaults::Stall);
    if (m_isStalled)
        logFault(QStringLiteral("stall: %1 ms").arg(m_faults.faults().stall));
    send(nextBurst());
    checkSource();
    checkRecording();
    schedule();
}

void VideoService::schedule()
{
    const double now = double(m_elapsed.elapsed());
    const double interval = m_isSlow ? SlowFactor * m_source->interval() : m_source->interval();
    m_due += m_isStalled ? m_faults.faults().stall : interval;
    if (m_due < now - MaxDelayMs)
        m_due = now;
    m_timer.start(int(std::max(0.0, std::ceil(m_due - now))));
}

std::unique_ptr<VideoSource> VideoService::openSourceFor(const VideoSettings &settings, const QString &file,
                                                         QString *fault) const
{
    QString reason;
    std::unique_ptr<VideoSource> source =
        file.isEmpty() ? TestPictureSource::open(settings, reason) : FileSource::open(file, settings, reason);
    if (fault)
        *fault = reason;
    return source;
}

bool VideoService::useSource(const VideoSettings &settings, const QString &file, QString *fault)
{
    std::unique_ptr<VideoSource> source = openSourceFor(settings, file, fault);
    if (!source)
        return false;
    m_current = settings;
    if (m_source) {
        m_source = std::move(source);
        m_beginsAnew = true;
    }
    return true;
}

void VideoService::changeByFault()
{
    if (m_faults.isDue(VideoFaults::HeaderTwice)) {
        m_beginsAnew = m_repeatsHeader = true;
        logFault(QStringLiteral("header: it comes again, twice"));
    }
    if (m_faults.isDue(VideoFaults::Slow)) {
        m_isSlow = !m_isSlow;
        logFault(m_isSlow ? QStringLiteral("slow: a tenth of the pictures")
                          : QStringLiteral("slow: no more"));
    }
    if (m_faults.isDue(VideoFaults::TimeJump)) {
        m_timeShift = m_timeShift == 0 ? TimeJumpMs : 0;
        logFault(QStringLiteral("jump: the time shifts by %1 ms").arg(m_timeShift));
    }
    VideoSettings wanted = m_current;
    if (m_faults.isDue(VideoFaults::SizeChange))
        wanted.size = wanted.size == m_settings.size ? otherSize(m_settings.size) : m_settings.size;
    if (m_faults.isDue(VideoFaults::CodecChange))
        wanted.codec = otherCodec(wanted.codec);
    const VideoSettings before = m_current;
    if (wanted == before || !m_file.isEmpty() || !useSource(wanted, m_file, nullptr))
        return;
    if (wanted.size != before.size)
        logFault(QStringLiteral("size: %1x%2").arg(wanted.size.width()).arg(wanted.size.height()));
    if (wanted.codec != before.codec)
        logFault(QStringLiteral("codec: %1").arg(nameOf(wanted.codec)));
}

void VideoService::logFault(const QString &what)
{
    Q_EMIT logged(QStringLiteral("video fault: %1").arg(what));
}

bool VideoService::openSource()
{
    QString fault;
    m_source = openSourceFor(m_current, m_file, &fault);
    if (!m_source)
        fail(m_file.isEmpty() ? RecorderText::tr("there is no video: %1").arg(fault)
                              : RecorderText::tr("there is no video: cannot show %1: %2").arg(m_file, fault));
    return m_source != nullptr;
}

void VideoService::endStream()
{
    const QList<Watcher> watchers = std::exchange(m_watchers, {});
    for (const Watcher &watcher : watchers) {
        if (const std::shared_ptr<VideoSink> sink = watcher.sink.lock())
            sink->end();
    }
    m_recording.reset(); // its stream has ended with the others
    m_source.reset();
    m_texts.clear();
    m_beginsAnew = false;
    m_repeatsHeader = false;
    m_isStalled = false;
    m_isSlow = false;
    m_timeShift = 0;
    m_second = -1;
}

/// False when no watcher is left.
bool VideoService::removeClosedSinks()
{
    m_watchers.removeIf([](const Watcher &watcher) { return watcher.sink.expired(); });
    return !m_watchers.isEmpty();
}

bool VideoService::hasNewWatcher() const
{
    return std::any_of(m_watchers.begin(), m_watchers.end(),
                       [](const Watcher &watcher) { return !watcher.isStarted; });
}

VideoService::Burst VideoService::nextBurst()
{
    const qint64 now = m_clock();
    const qint64 time = now + m_timeShift;
    const bool needsIndex = m_beginsAnew || time / MsPerSecond != m_second;
    const CodedPicture picture = m_source->next(needsIndex || hasNewWatcher(), m_pose, now);
    ++m_encodedPictures;
    QList<QByteArray> records;
    if (!picture.bytes.isEmpty())
        records =
            videoRecords(PictureStream, picture.bytes, m_settings.fragmentSize, quint16(time % MsPerSecond));
    for (const QString &what : m_faults.damage(records))
        logFault(what);
    const QByteArray pictureRecords = records.join();
    Burst burst;
    if (picture.isKey) {
        burst.begin = header() + indexAndClock(time);
        for (const auto &[streamId, text] : m_stateTexts)
            burst.begin += textRecords(streamId, text);
        burst.begin += pictureRecords;
    }
    if (std::exchange(m_beginsAnew, false))
        burst.common += header().repeated(std::exchange(m_repeatsHeader, false) ? 2 : 1);
    if (needsIndex) {
        burst.common += indexAndClock(time);
        m_second = time / MsPerSecond;
        ++m_indexNumber;
        sendEvent(m_second);
    }
    burst.common += std::exchange(m_texts, {}) + pictureRecords;
    return burst;
}

void VideoService::sendEvent(qint64 second)
{
    constexpr qint64 Period = 3;
    const QString events[] = {QStringLiteral("Motion at the gate"), QStringLiteral("Движение у ворот"),
                              QStringLiteral("The gate is open"), QStringLiteral("Ворота открыты")};
    if (second % Period == 0)
        sendText(EventStream, events[size_t(second / Period) % std::size(events)]);
}

QByteArray VideoService::header() const
{
    const QList<StreamDescription> streams = {
        {PictureStream, StreamDescription::Video, streamLabel(m_source->codec()), "Camera 1", ""},
        {EventStream, StreamDescription::Text, "text", "Events", "-utf8"},
        {PositionStream, StreamDescription::Text, "text", "PTZ", "-utf8"},
        {ClockStream, StreamDescription::Clock, "time", "Clock", ""},
    };
    // Tag 1 is the charset of the name and the titles.
    return headerRecord("Paravue recorder", streams, {{1, "-utf8"}, {2, "UTC"}});
}

QByteArray VideoService::indexAndClock(qint64 time)
{
    return indexRecord(quint32(time / MsPerSecond), m_indexNumber, clockFrame(time)) +
           dataRecords(ClockStream, clockFrame(time), m_settings.fragmentSize).join();
}

QByteArray VideoService::textRecords(quint8 streamId, const QByteArray &text) const
{
    return dataRecords(streamId, text, m_settings.fragmentSize).join();
}

void VideoService::send(const Burst &burst)
{
    // A write may end a connection, which changes the list.
    const QList<Watcher> watchers = m_watchers;
    for (qsizetype i = 0; i < watchers.size(); ++i) {
        const std::shared_ptr<VideoSink> sink = watchers[i].sink.lock();
        if (!sink)
            continue;
        const QByteArray &bytes = watchers[i].isStarted ? burst.common : burst.begin;
        const bool goesOn = sink->isReady() && (watchers[i].isStarted || !bytes.isEmpty());
        m_watchers[i].isStarted = goesOn;
        if (!goesOn || bytes.isEmpty())
            continue;
        const qsizetype now = m_isStalled ? bytes.size() / 2 : bytes.size();
        sink->write(bytes.left(now));
        m_watchers[i].delayed = bytes.mid(now);
    }
}

void VideoService::sendDelayed()
{
    for (Watcher &watcher : m_watchers) {
        const QByteArray delayed = std::exchange(watcher.delayed, {});
        const std::shared_ptr<VideoSink> sink = watcher.sink.lock();
        if (sink && !delayed.isEmpty())
            sink->write(delayed);
    }
}

void VideoService::checkSource()
{
    const QString fault = m_source->fault();
    if (!fault.isEmpty() && fault != m_sourceFault)
        fail(RecorderText::tr("cannot go on with %1: %2").arg(m_file, fault));
    m_sourceFault = fault;
}

void VideoService::checkRecording()
{
    if (!m_recording || m_recording->isReady())
        return;
    fail(RecorderText::tr("the recording ends: cannot write %1: %2")
             .arg(m_recording->path(), m_recording->errorString()));
    m_recording.reset();
}

void VideoService::fail(const QString &line)
{
    Q_EMIT logged(line);
    Q_EMIT failed(line);
}

} // namespace recorder
