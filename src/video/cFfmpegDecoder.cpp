#include "video/cFfmpegDecoder.h"

#include "video/CodecStream.h"
#include "video/EventLoopBudget.h"

#include <QPointer>

#include <utility>

using paravue::CodecStream;
using paravue::DecodingLimits;
using paravue::EventLoopBudget;
using paravue::LiveLimits;

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
        addTask({true, name});
        return CodecStream::isDecoder(name);
    }
    m_tasks.clear();
    open(name);
    return m_stream != nullptr;
}

void cFfmpegDecoder::append(const QByteArray &bytes)
{
    // A receiver may destroy this decoder.
    const QPointer<cFfmpegDecoder> self(this);
    addTask({false, bytes});
    if (!self || m_budget || m_working)
        return;
    m_working = true;
    while (self && !m_tasks.empty())
        step();
    if (self)
        m_working = false;
}

void cFfmpegDecoder::addTask(const Task &task)
{
    const bool isFirst = m_tasks.empty();
    m_tasks.push_back(task);
    if (isFirst && m_budget)
        m_budget->defer(this, [this] { return step(); });
}

/// Does the next step; false when nothing is left.
bool cFfmpegDecoder::step()
{
    const QPointer<cFfmpegDecoder> self(this);
    if (!m_image.isNull())
        showPicture();
    else if (m_hasPicture)
        convertPicture();
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
    const Task task = m_tasks.front();
    if (!task.opens && m_stream) {
        m_stream->begin(task.bytes);
        m_isDecoding = true;
        return;
    }
    m_tasks.pop_front();
    if (task.opens)
        open(task.bytes);
}

void cFfmpegDecoder::open(const QByteArray &name)
{
    m_isDecoding = false;
    m_hasPicture = false;
    m_image = QImage();
    m_converter.reset();
    m_stream = CodecStream::open(name, m_budget ? LiveLimits : DecodingLimits());
}

void cFfmpegDecoder::decodeNext()
{
    const auto progress = m_stream->next();
    m_hasPicture = progress == CodecStream::Progress::Picture;
    if (progress == CodecStream::Progress::AtEnd) {
        m_isDecoding = false;
        m_tasks.pop_front();
    }
}

void cFfmpegDecoder::convertPicture()
{
    m_hasPicture = false;
    m_image = m_converter.convert(m_stream->picture());
}

void cFfmpegDecoder::showPicture()
{
    Q_EMIT onFrame(std::exchange(m_image, QImage()));
}
