#include "VideoService.h"

#include "VideoSource.h"

#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace recorder
{

namespace
{

constexpr qint64 MsPerSecond = 1000;
/// Pictures that are later than this are left out.
constexpr double MostLate = 500;

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
    QString reason;
    std::unique_ptr<VideoSource> source = TestPictureSource::open(settings, reason);
    if (fault)
        *fault = reason;
    if (!source)
        return false;
    m_settings = settings;
    if (m_source) {
        m_source = std::move(source);
        m_beginsAnew = true;
    }
    return true;
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
    if (!forgetGone() || (!m_source && !openSource())) {
        endStream();
        return;
    }
    send(nextBurst());
    schedule();
}

void VideoService::schedule()
{
    const double now = double(m_elapsed.elapsed());
    m_due += m_source->interval();
    if (m_due < now - MostLate)
        m_due = now;
    m_timer.start(int(std::max(0.0, std::ceil(m_due - now))));
}

bool VideoService::openSource()
{
    QString fault;
    m_source = TestPictureSource::open(m_settings, fault);
    if (!m_source)
        Q_EMIT logged(QStringLiteral("there is no video: %1").arg(fault));
    return m_source != nullptr;
}

void VideoService::endStream()
{
    const QList<Watcher> watchers = std::exchange(m_watchers, {});
    for (const Watcher &watcher : watchers) {
        if (const std::shared_ptr<VideoSink> sink = watcher.sink.lock())
            sink->end();
    }
    m_source.reset();
    m_texts.clear();
    m_beginsAnew = false;
    m_second = -1;
}

/// False when nobody watches any more.
bool VideoService::forgetGone()
{
    m_watchers.removeIf([](const Watcher &watcher) { return watcher.sink.expired(); });
    return !m_watchers.isEmpty();
}

bool VideoService::somebodyBegins() const
{
    return std::any_of(m_watchers.begin(), m_watchers.end(),
                       [](const Watcher &watcher) { return !watcher.isStarted; });
}

VideoService::Burst VideoService::nextBurst()
{
    const qint64 time = m_clock();
    const bool needsIndex = m_beginsAnew || time / MsPerSecond != m_second;
    const CodedPicture picture = m_source->next(needsIndex || somebodyBegins(), m_pose, time);
    ++m_encodedPictures;
    QByteArray pictureRecords;
    if (!picture.bytes.isEmpty())
        pictureRecords =
            videoRecords(PictureStream, picture.bytes, m_settings.fragmentSize, quint16(time % MsPerSecond))
                .join();
    Burst burst;
    if (picture.isKey) {
        burst.begin = header() + indexAndClock(time);
        for (const auto &[streamId, text] : m_stateTexts)
            burst.begin += textRecords(streamId, text);
        burst.begin += pictureRecords;
    }
    if (std::exchange(m_beginsAnew, false))
        burst.common += header();
    if (needsIndex) {
        burst.common += indexAndClock(time);
        m_second = time / MsPerSecond;
        ++m_indexNumber;
    }
    burst.common += std::exchange(m_texts, {}) + pictureRecords;
    return burst;
}

QByteArray VideoService::header() const
{
    const QList<StreamDescription> streams = {
        {PictureStream, StreamDescription::Video, streamLabel(m_source->codec()), "Camera 1", ""},
        {EventStream, StreamDescription::Text, "text", "Events", "-utf8"},
        {PositionStream, StreamDescription::Text, "text", "PTZ", "-utf8"},
        {ClockStream, StreamDescription::Clock, "time", "Clock", ""},
    };
    // The first text is the charset of the name and the titles.
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
    // Writing may end a connection and so change the list.
    const QList<Watcher> watchers = m_watchers;
    for (qsizetype i = 0; i < watchers.size(); ++i) {
        const std::shared_ptr<VideoSink> sink = watchers[i].sink.lock();
        if (!sink)
            continue;
        const QByteArray &bytes = watchers[i].isStarted ? burst.common : burst.begin;
        const bool goesOn = sink->isReady() && (watchers[i].isStarted || !bytes.isEmpty());
        m_watchers[i].isStarted = goesOn;
        if (goesOn && !bytes.isEmpty())
            sink->write(bytes);
    }
}

} // namespace recorder
