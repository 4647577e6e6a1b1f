#include "video/cFfmpegDecoder.h"

#include "video/CodecStream.h"
#include "video/EventLoopBudget.h"

#include <QPointer>
#include <QTimerEvent>

#include <utility>

extern "C" {
#include <libavutil/frame.h>
}

using paravue::CodecStream;
using paravue::DecodingLimits;
using paravue::EventLoopBudget;
using paravue::LiveLimits;

using SteadyClock = std::chrono::steady_clock;

namespace
{

/// How often it is asked whether somebody sees what is held, in case nothing further comes.
constexpr int HeldInterval = 250; // milliseconds

} // namespace

cFfmpegDecoder::cFfmpegDecoder(QObject *parent) : QObject(parent) {}

cFfmpegDecoder::~cFfmpegDecoder() = default;

void cFfmpegDecoder::workInTurns()
{
    m_budget = EventLoopBudget::shared();
}

bool cFfmpegDecoder::create(const QString &format)
{
    const QByteArray name = format.toLatin1();
    if (m_budget) {
        addTask(true, name);
        return CodecStream::isDecoder(name);
    }
    m_tasks.clear();
    m_waitingBytes = 0;
    open(name);
    return m_stream != nullptr;
}

void cFfmpegDecoder::append(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    // A receiver may destroy this decoder.
    const QPointer<cFfmpegDecoder> self(this);
    addTask(false, bytes);
    if (!self || m_budget || m_working)
        return;
    m_working = true;
    while (self && !m_tasks.empty())
        step();
    if (self)
        m_working = false;
}

void cFfmpegDecoder::addTask(bool opens, const QByteArray &bytes)
{
    const bool isFirst = m_tasks.empty();
    m_tasks.push_back({opens, bytes, SteadyClock::now(), false});
    m_waitingBytes += m_tasks.back().size();
    if (isFirst && m_budget)
        m_budget->defer(this, [this] { return step(); });
}

void cFfmpegDecoder::removeTask()
{
    const bool wasUnseen = m_tasks.front().isUnseen;
    m_waitingBytes -= m_tasks.front().size();
    m_tasks.pop_front();
    if (!wasUnseen || m_tasks.empty() || m_tasks.front().isUnseen)
        return;
    // They have waited for what was held, not because this computer is too slow for the stream.
    for (Task &task : m_tasks)
        task.begin = SteadyClock::now();
}

/// Does the next step; false when nothing is left.
bool cFfmpegDecoder::step()
{
    const QPointer<cFfmpegDecoder> self(this);
    if (m_hasPicture)
        showPicture();
    else if (m_isDecoding)
        decodeNext();
    else
        beginTask();
    if (!self)
        return false;
    if (!m_tasks.empty())
        return true;
    Q_EMIT idle();
    return false;
}

void cFfmpegDecoder::beginTask()
{
    const Task &task = m_tasks.front();
    if (task.opens) {
        const QByteArray name = task.bytes;
        removeTask();
        open(name);
    } else if (!m_stream || isLeftOut()) {
        noteWait(task);
        dropHeld();
        keepParameters(task.bytes);
        removeTask();
    } else if (!task.isUnseen && isHeld()) {
        removeTask();
    } else if (!task.isUnseen && !m_held.empty()) {
        releaseHeld();
    } else {
        noteWait(task);
        m_stream->begin(withParameters(task.bytes));
        m_isDecoding = true;
    }
}

void cFfmpegDecoder::noteWait(const Task &task)
{
    m_lastWait = std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - task.begin);
}

/// A recorder may send them but once, and in a frame of their own.
void cFfmpegDecoder::keepParameters(const QByteArray &bytes)
{
    constexpr qsizetype Most = 8;
    const QByteArray parameters = m_stream ? m_stream->parametersIn(bytes) : QByteArray();
    if (parameters.isEmpty())
        return;
    m_parameters.removeAll(parameters);
    m_parameters.append(parameters);
    if (m_parameters.size() > Most)
        m_parameters.removeFirst();
}

QByteArray cFfmpegDecoder::withParameters(const QByteArray &bytes)
{
    return m_parameters.isEmpty() ? bytes : std::exchange(m_parameters, {}).join() + bytes;
}

/// Keeps the next bytes while nobody sees them. Those before a key picture are not needed any more.
bool cFfmpegDecoder::isHeld()
{
    if (!m_budget || !m_isWatched || m_isWatched())
        return false;
    const QByteArray &bytes = m_tasks.front().bytes;
    if (m_stream->isKey(bytes))
        dropHeld();
    if (m_held.size() >= paravue::MaxHeldFrames || m_heldBytes + bytes.size() > paravue::MaxHeldBytes ||
        (m_held.size() + 1) * m_usualTime > paravue::MaxHeldTime)
        return false;
    m_held.push_back(bytes);
    m_heldBytes += bytes.size();
    if (!m_heldTimer.isActive())
        m_heldTimer.start(HeldInterval, this);
    return true;
}

void cFfmpegDecoder::dropHeld()
{
    for (const QByteArray &bytes : m_held)
        keepParameters(bytes);
    m_held.clear();
    m_heldBytes = 0;
}

/// Puts what was held before the next bytes.
void cFfmpegDecoder::releaseHeld()
{
    for (; !m_held.empty(); m_held.pop_back()) {
        m_tasks.push_front({false, m_held.back(), SteadyClock::now(), true});
        m_waitingBytes += m_tasks.front().size();
    }
    m_heldBytes = 0;
}

void cFfmpegDecoder::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_heldTimer.timerId())
        QObject::timerEvent(event);
    else if (m_held.empty())
        m_heldTimer.stop();
    else if (m_tasks.empty() && m_isWatched())
        showHeld();
}

/// Decodes what was held without waiting for the next bytes, which may never come.
void cFfmpegDecoder::showHeld()
{
    releaseHeld();
    m_tasks.back().isUnseen = false;
    m_budget->defer(this, [this] { return step(); });
}

bool cFfmpegDecoder::isLate() const
{
    const Task &task = m_tasks.front();
    return m_budget && m_maxWait && !task.isUnseen && SteadyClock::now() - task.begin > *m_maxWait;
}

/// Whether the next bytes are left out because they are late, or because no key picture has come since.
bool cFfmpegDecoder::isLeftOut()
{
    if (isLate()) {
        if (!m_skippingSince)
            m_skippingSince = SteadyClock::now();
    } else if (m_skippingSince && (m_stream->isKey(m_tasks.front().bytes) ||
                                   SteadyClock::now() - *m_skippingSince > paravue::MaxKeyWait)) {
        m_skippingSince.reset();
    }
    if (m_skippingSince)
        ++m_leftOut;
    return m_skippingSince.has_value();
}

void cFfmpegDecoder::open(const QByteArray &name)
{
    m_isDecoding = false;
    m_hasPicture = false;
    m_converter.reset();
    m_scaler.reset();
    m_scaled.reset();
    m_skippingSince.reset();
    dropHeld();
    m_parameters.clear();
    m_stream = CodecStream::open(name, m_budget ? LiveLimits : DecodingLimits());
}

void cFfmpegDecoder::decodeNext()
{
    const auto begin = SteadyClock::now();
    // One frame may hold thousands of pictures.
    const auto progress = isLate() && isLeftOut() ? CodecStream::Progress::AtEnd : m_stream->next();
    m_taskTime += SteadyClock::now() - begin;
    m_hasPicture = progress == CodecStream::Progress::Picture;
    if (progress == CodecStream::Progress::AtEnd) {
        m_usualTime += (std::exchange(m_taskTime, {}) - m_usualTime) / 8;
        m_isDecoding = false;
        removeTask();
    }
}

void cFfmpegDecoder::showPicture()
{
    m_hasPicture = false;
    const QSize newSize(m_stream->picture().width, m_stream->picture().height);
    const bool isSameSize = std::exchange(m_pictureSize, newSize) == newSize;
    if (m_tasks.front().isUnseen)
        return;
    const std::optional<QSize> size = m_wantedSize ? m_wantedSize() : QSize();
    if (!size)
        return;
    if (isSameSize && !size->isEmpty() && showScaled(*size))
        return;
    m_scaled.reset();
    const QImage image = m_converter.convert(m_stream->picture());
    if (!image.isNull())
        Q_EMIT onFrame(image);
}

bool cFfmpegDecoder::showScaled(QSize size)
{
    const QImage image = m_scaler.convertTo(m_stream->picture(), size);
    if (image.isNull())
        return false;
    if (!m_scaled)
        m_scaled.reset(av_frame_alloc());
    if (m_scaled)
        m_stream->takePicture(*m_scaled);
    Q_EMIT onScaledFrame(image);
    return true;
}

QImage cFfmpegDecoder::wholePicture()
{
    const auto picture = std::exchange(m_scaled, nullptr);
    return picture ? m_converter.convert(*picture) : QImage();
}
