#pragma once

#include <QByteArray>

namespace paravue
{

/// Stands before the keys of a file that has no section of its own, so that the local copy reads as having
/// the section "untitled". It is no part of the file for the recorder.
inline constexpr QByteArrayView UntitledHeader("[ untitled ]\r\n");

/// A local file as it goes to the recorder: a "LENGTH=" line, then the content without the untitled header
/// and with LF line ends, which the length counts. Nothing at all for an empty file.
QByteArray wireBody(const QByteArray &file);

} // namespace paravue
