#pragma once

#include <QtGlobal>

namespace paravue
{

// What a recorder sends is never trusted. These are far above what any recorder sends; they keep a broken or
// hostile one from filling the memory or the disk. The limits on the description's XML are in
// store/XmlLimits.h, those on the directives of state files in store/StateTemplate.h.

/// One reply, and everything that is received while a reply is awaited.
inline constexpr qsizetype MaxReplyBytes = 48 * 1024 * 1024;
/// All replies of one exchange.
inline constexpr qsizetype MaxExchangeBytes = 512 * 1024 * 1024;
/// What the operating system's buffer passes on while nobody reads (a message is on the screen, for example).
inline constexpr qsizetype MaxUnreadBytes = 4 * 1024 * 1024;
/// An answer text that is quoted to the user.
inline constexpr qsizetype MaxQuotedAnswer = 4096;

/// A package file that is sent for installation; it is held in memory.
inline constexpr qint64 MaxPackageBytes = 256 * 1024 * 1024;

/// The interface description after unpacking.
inline constexpr qsizetype MaxDescriptionBytes = 16 * 1024 * 1024;
/// Files that a description may list for transfer.
inline constexpr qsizetype MaxListedFiles = 1000;

} // namespace paravue
