#pragma once

#include "PictureInspector.h"
#include "video/cHvx3Parser.h"

#include <functional>
#include <map>

namespace paravue
{

/// A frame of a recording.
struct RecordedFrame {
    const DATA_T &record;
    qint64 time;          ///< of the stream, in milliseconds
    PictureFacts picture; ///< of a video stream whose codec is known
};

/// Reads a recording from beginning to end and calls a function for each record.
class FrameReader
{
public:
    /// \a header is that of a recording that begins behind its own one (see GivenHeader.h), or empty.
    explicit FrameReader(const QByteArray &header = {});

    std::function<void(const HDR_T &header)> onHeader;
    std::function<void(qint64 time)> onIndex;
    std::function<void(const RecordedFrame &frame)> onFrame;

    /// Throws a MediaError.
    void read(const QString &file);

    const cHvx3Parser &parser() const { return m_parser; }
    qint64 bytes() const { return m_bytes; }
    bool hasGivenHeader() const { return !m_givenHeader.isEmpty(); }
    /// Whether the recording begins with the answer to a login.
    bool hasAnswerToLogin() const { return m_hasAnswer; }

private:
    struct Inspected {
        QByteArray label;
        std::unique_ptr<PictureInspector> inspector;
    };

    void parse(const QByteArray &piece);
    void takeFrame(const DATA_T &record);
    PictureFacts inspect(const DATA_T &record);

    const QByteArray m_givenHeader;
    cHvx3Parser m_parser;
    std::map<quint8, Inspected> m_inspected;
    qint64 m_bytes = 0;
    QByteArray m_start; ///< the first bytes, while they may be the answer to a login
    bool m_hasStarted = false;
    bool m_hasAnswer = false;
};

/// The answer of a recorder that accepts a login.
inline constexpr char AnswerToLogin[] = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";

} // namespace paravue
