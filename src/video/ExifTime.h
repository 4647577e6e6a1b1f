#pragma once

#include <QByteArray>
#include <QDateTime>

namespace paravue
{

/// When a camera has taken the JPEG picture \a jpeg, as it has noted in it: DateTimeOriginal of Exif (CIPA
/// DC-008), with the offset from UTC if it is there, else in local time, whose zone is that of the camera.
/// Not valid when there is none.
QDateTime exifTime(const QByteArray &jpeg);

} // namespace paravue
