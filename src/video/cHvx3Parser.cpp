#include "video/cHvx3Parser.h"

#include "video/MagicSearch.h"

#include <QScopeGuard>

#include <algorithm>
#include <limits>
#include <utility>

using namespace paravue;

namespace
{

constexpr int MagicSize = 4;
constexpr int IndexSize = 13; // without its blob
constexpr int DataHeadSize = 4;
constexpr int ExtensionSize = 4;
constexpr quint8 FirstFragmentFlag = 0x80;

bool isAccepted(quint8 streamType)
{
    return streamType == VideoStream || streamType == PlainStream || streamType == TextStream ||
           streamType == 8 || streamType == 16;
}

bool isMagic(quint32 value)
{
    return value == Hvx3HeaderMagic || value == Hvx3IndexMagic;
}

void readExtension(const cDataSplitter &input, int &position, FragmentHead &head)
{
    head.word16 = input.readU16(position);
    head.byteA = input.readU8(position);
    head.byteB = input.readU8(position);
    // Deliberate: only below 4.
    if (head.byteA < 4) {
        head.word16 %= 3000;
    }
}

} // namespace

cHvx3Parser::cHvx3Parser(QObject *parent) : QObject(parent), m_maxFrameSize(std::numeric_limits<int>::max())
{
    m_streamAt.fill(-1);
}

void cHvx3Parser::setMaxFrameSize(int bytes)
{
    m_maxFrameSize = std::max(bytes, 1);
    m_frames.setMaxFrameSize(m_maxFrameSize);
}

paravue::Hvx3Losses cHvx3Parser::losses() const
{
    const paravue::Hvx3StreamCounts all = m_frames.counts();
    return {m_lostBytes, m_gaps, all.lostFragments, all.lostFrames};
}

void cHvx3Parser::append(const QByteArray &bytes)
{
    if (takeWhole(bytes)) {
        return;
    }
    // When a receiver of a signal calls this, the rest of the piece under way comes first.
    keepRest();
    m_rest = bytes;
    const auto keepWhatIsLeft = qScopeGuard([this] {
        keepRest();
        m_input.keep();
    });
    while (!m_rest.isEmpty()) {
        feed();
        parse();
    }
}

/// Takes a \a piece that does not complete what is being read. Very small pieces are taken at little cost so.
bool cHvx3Parser::takeWhole(QByteArrayView piece)
{
    if (!m_rest.isEmpty()) {
        return false;
    }
    if (m_state == InPayload && piece.size() < m_payloadLeft) {
        addPayload(piece);
        return true;
    }
    if (piece.size() < m_missing) {
        m_input.append(piece);
        m_missing -= piece.size();
        return true;
    }
    return false;
}

/// Gives the input the rest of the piece to read in place. Only when a header or the head of a record is cut,
/// the bytes that it needs are copied behind it first.
void cHvx3Parser::feed()
{
    const QByteArrayView rest = std::exchange(m_rest, QByteArrayView());
    if (isGarbageBefore(rest)) {
        skip(m_input.size());
    }
    if (m_input.size() == 0) {
        m_input.borrow(rest);
        return;
    }
    const qsizetype wanted = m_missing > 0 ? std::min(m_missing, rest.size()) : rest.size();
    m_input.append(rest.first(wanted));
    m_rest = rest.sliced(wanted);
}

/// True when no record begins in the few bytes that a search has left, so that \a rest need not follow them.
bool cHvx3Parser::isGarbageBefore(QByteArrayView rest) const
{
    constexpr qsizetype Ahead = MagicSize - 1;
    const QByteArrayView left = m_input.unread();
    const bool isSearching = m_state == AwaitHeader || m_state == AwaitIndex;
    if (!isSearching || left.isEmpty() || left.size() > Ahead || rest.size() < Ahead) {
        return false;
    }
    std::array<char, 2 * Ahead> border;
    const auto end = std::copy_n(rest.begin(), Ahead, std::copy(left.begin(), left.end(), border.begin()));
    const QByteArrayView bytes(border.data(), end - border.begin());
    return (m_state == AwaitHeader ? findHeaderMagic(bytes) : findRecordMagic(bytes)) == left.size();
}

void cHvx3Parser::keepRest()
{
    if (!m_rest.isEmpty()) {
        m_input.append(std::exchange(m_rest, QByteArrayView()));
    }
}

void cHvx3Parser::parse()
{
    try {
        do {
            m_missing = 0;
        } while (step());
    } catch (const QByteArray &signal) {
        // An empty one means that more data is needed. The steps check for that before they read, as a throw
        // for each piece would make parsing many times slower.
        if (!signal.isEmpty()) {
            throw;
        }
    }
}

/// Reads one record or changes the state; false when more data is needed. A step emits its signal last, as a
/// receiver may call append().
bool cHvx3Parser::step()
{
    if (m_headerReader.position() > 0) {
        return readHeader();
    }
    switch (m_state) {
    case AwaitHeader:
        return headerStep();
    case AwaitIndex:
        return indexStep();
    case InData:
        return dataStep();
    case InPayload:
        return payloadStep();
    }
    return false;
}

bool cHvx3Parser::headerStep()
{
    return skipTo(findHeaderMagic(m_input.unread())) && readHeader();
}

bool cHvx3Parser::indexStep()
{
    if (!skipTo(findRecordMagic(m_input.unread()))) {
        return false;
    }
    int position = 0;
    const quint32 magic = m_input.readU32(position);
    if (magic == Hvx3HeaderMagic) {
        return headerOrIndexStep();
    }
    if (!m_input.has(0, IndexSize)) {
        return false;
    }
    IDX_T index;
    index.value1 = magic;
    index.value2 = m_input.readU32(position);
    index.value3 = m_input.readU32(position);
    const int blobLength = m_input.readU8(position);
    if (!m_input.has(position, blobLength)) {
        return false;
    }
    index.blob = m_input.readBytes(position, blobLength);
    m_input.consume(position);
    m_index = index;
    m_state = InData;
    m_inGap = false;
    m_frames.clear();
    Q_EMIT onIDX(index);
    return true;
}

/// Reads a header in the middle of the stream, unless it is an index record behind two bytes of damage, which
/// can look like one. The garbled stream table of such a header would make all following frames unreadable.
bool cHvx3Parser::headerOrIndexStep()
{
    int position = 2;
    if (!m_input.has(position, MagicSize)) {
        return false;
    }
    if (m_input.readU32(position) == Hvx3IndexMagic) {
        skip(2);
        return true;
    }
    return readHeader();
}

/// Reads the head of a data record. The payload goes to its frame as it comes, so that it is copied once.
bool cHvx3Parser::dataStep()
{
    if (!requireBytes(DataHeadSize)) {
        return false;
    }
    int position = 0;
    if (isMagic(m_input.readU32(position))) {
        m_state = AwaitIndex;
        return true;
    }
    position = 0;
    const int length = m_input.readU16(position);
    const quint8 flags = m_input.readU8(position);
    const quint8 streamId = m_input.readU8(position);
    const int at = m_streamAt[streamId];
    if (at < 0 || !isAccepted(m_streams.at(at).streamType)) {
        m_state = AwaitIndex;
        return true;
    }
    const STREAM_T &stream = m_streams.at(at);
    const bool extended = stream.streamType == VideoStream && (flags & FirstFragmentFlag);
    if (extended && !requireBytes(DataHeadSize + ExtensionSize)) {
        return false;
    }
    FragmentHead head{.length = length, .flags = flags, .streamId = streamId};
    if (extended) {
        readExtension(m_input, position, head);
    }
    m_input.consume(position);
    m_recordBytes = position;
    m_recordStream = at;
    m_payloadLeft = length;
    m_frames.begin(head);
    m_state = InPayload;
    return true;
}

/// Waits for so many bytes; false while they are not there.
bool cHvx3Parser::requireBytes(int size)
{
    m_missing = std::max<qsizetype>(size - m_input.size(), 0);
    return m_missing == 0;
}

bool cHvx3Parser::payloadStep()
{
    const qsizetype size = std::min<qsizetype>(m_payloadLeft, m_input.size());
    addPayload(m_input.unread().first(size));
    m_input.consume(size);
    if (m_payloadLeft > 0) {
        return false;
    }
    m_recordBytes = 0;
    m_state = InData;
    if (m_frames.end()) {
        DATA_T frame = m_frames.take(m_streams.at(m_recordStream));
        QByteArray payload = frame.payload;
        Q_EMIT onDATA(std::move(frame));
        m_frames.recycle(std::move(payload));
    }
    return true;
}

void cHvx3Parser::addPayload(QByteArrayView bytes)
{
    m_frames.add(bytes);
    m_recordBytes += bytes.size();
    m_payloadLeft -= static_cast<int>(bytes.size());
}

/// Drops the bytes before \a magicAt; true when a magic is there.
bool cHvx3Parser::skipTo(qsizetype magicAt)
{
    skip(magicAt);
    return m_input.has(0, MagicSize);
}

void cHvx3Parser::skip(qsizetype bytes)
{
    if (bytes == 0) {
        return;
    }
    m_input.consume(bytes);
    m_lostBytes += bytes;
    m_gaps += m_inGap ? 0 : 1;
    m_inGap = true;
}

/// Reads the header at the front, also where an index record is awaited: there it begins the stream anew.
bool cHvx3Parser::readHeader()
{
    if (!m_headerReader.read(m_input) || m_headerReader.position() > m_maxFrameSize) {
        return dropLargeHeader();
    }
    m_input.consume(m_headerReader.position());
    m_header = m_headerReader.take();
    m_streams = m_header.streams;
    m_streamAt.fill(-1);
    for (qsizetype i = m_streams.size() - 1; i >= 0; --i) {
        m_streamAt[m_streams.at(i).streamId] = static_cast<qint16>(i); // the first stream with an id counts
    }
    m_state = AwaitIndex;
    m_inGap = false;
    Q_EMIT onHDR(m_header);
    return true;
}

/// Drops the bytes of a header that is larger than the limit; false while it is not.
bool cHvx3Parser::dropLargeHeader()
{
    if (m_input.size() < m_maxFrameSize) {
        requireBytes(std::min(m_headerReader.leastSize(), m_maxFrameSize));
        return false;
    }
    m_headerReader = HeaderReader();
    // Not from the second byte on: bytes with many beginnings of headers would be read many times.
    skip(m_maxFrameSize);
    return true;
}
