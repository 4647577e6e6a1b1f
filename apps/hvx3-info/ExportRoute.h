#pragma once

#include "FrameReader.h"
#include "PictureOrder.h"

#include <map>
#include <optional>
#include <vector>

namespace paravue
{

/// One file of an export.
struct ExportFile {
    std::map<quint8, PictureFacts> tracks; ///< by stream id: the facts of its first picture
    std::map<quint8, PictureOrderFinder> orders;
    qint64 begin = 0; ///< the earliest time in it, in milliseconds
    qint64 pictures = 0;
};

/// Decides for each picture of a recording which file of the export it belongs to.
///
/// A stream begins with a key picture whose size is known. Where its codec or size changes, the next file
/// begins. The other streams continue there from their next key pictures on, so that every file can be
/// played.
class ExportRoute
{
public:
    /// Keeps a stream that changes its size all the time from filling a folder with files.
    static constexpr size_t MaxFiles = 100;

    /// The number of the file, 0 for the first one; nothing when the picture is left out.
    std::optional<size_t> place(const RecordedFrame &frame);

    const std::vector<ExportFile> &files() const { return m_files; }
    /// The pictures of video streams that are in no file.
    qint64 leftOut() const { return m_leftOut; }

private:
    struct Stream {
        size_t file = 0;
        PictureFacts facts;
    };

    void begin(Stream &stream, quint8 id, const PictureFacts &facts);

    std::map<quint8, Stream> m_streams;
    std::vector<ExportFile> m_files;
    qint64 m_leftOut = 0;
};

} // namespace paravue
