#pragma once

#include "Recording.h"

#include <QString>

#include <chrono>
#include <optional>

namespace paravue
{

/// Where live video comes from.
struct VideoAddress {
    QString host;
    quint16 port = 5049;
    QString login;
    QString password; ///< as it is sent

    /// Reads login:password\@host[:port]. Nothing when \a text has another form.
    static std::optional<VideoAddress> fromText(const QString &text);
};

struct RecordingTimes {
    std::chrono::seconds duration{10};
    std::chrono::seconds silence{12}; ///< the longest one
};

/// Writes what the recorder at \a address sends on a connection to its video service, from its answer to the
/// login on, into a new file. A connection that ends before the duration is over, or over which nothing comes
/// any more, ends the recording, too, and its error is returned. Needs a QCoreApplication. Throws a
/// MediaError when there is no recording, or none that is whole; what was recorded until then stays in the
/// file.
std::optional<MediaError> recordLive(const VideoAddress &address, const RecordingTimes &times,
                                     const QString &file);

} // namespace paravue
