#include "ExportRoute.h"

#include "InfoText.h"
#include "Recording.h"
#include "StreamClock.h"

namespace paravue
{

namespace
{

bool canBegin(const PictureFacts &facts)
{
    // They belong into the head of the file.
    const bool isComplete = facts.codec != AV_CODEC_ID_H264 || !facts.parameterSets.isEmpty();
    return facts.isKey && !facts.size.isEmpty() && isComplete;
}

bool differ(const PictureFacts &a, const PictureFacts &b)
{
    return a.codec != b.codec || a.size != b.size;
}

} // namespace

std::optional<size_t> ExportRoute::place(const RecordedFrame &frame)
{
    const PictureFacts &facts = frame.picture;
    if (frame.record.stream.streamType != VideoStream)
        return {};
    const quint8 id = frame.record.streamId;
    const auto stream = m_streams.try_emplace(id).first;
    const bool goesOn = stream->second.facts.codec == facts.codec && facts.codec != AV_CODEC_ID_NONE;
    if (canBegin(facts)) {
        begin(stream->second, id, facts);
    } else if (!goesOn) {
        // Behind another codec the stream begins with a key picture again.
        stream->second.facts = {};
        ++m_leftOut;
        return {};
    }
    ExportFile &file = m_files[stream->second.file];
    const bool isFirst = file.pictures++ == 0;
    const bool isEarlier = frame.time < file.begin && file.begin - frame.time <= StreamClock::LargestStepBack;
    if (isFirst || isEarlier)
        file.begin = frame.time;
    file.orders[id].take(frame.time, facts.isBPicture);
    return stream->second.file;
}

/// Moves the \a stream to the file that a key picture with these \a facts belongs to.
void ExportRoute::begin(Stream &stream, quint8 id, const PictureFacts &facts)
{
    if (m_files.empty())
        m_files.emplace_back();
    const auto track = m_files.back().tracks.find(id);
    if (track != m_files.back().tracks.end() && differ(track->second, facts)) {
        if (m_files.size() == MaxFiles)
            throw MediaError(InfoText::tr("the size of the pictures changes too often: an export has at "
                                          "most %1 files")
                                 .arg(MaxFiles),
                             ExitCode::BadData);
        m_files.emplace_back();
    }
    m_files.back().tracks.emplace(id, facts);
    stream.file = m_files.size() - 1;
    stream.facts = facts;
}

} // namespace paravue
