#pragma once

#include <QString>

namespace paravue
{

/// A recorder that formats a disk answers after seconds. A longer silence, in milliseconds, is shown.
inline constexpr qint64 ReportedSilence = 12'000;

/// That the recorder has not answered for \a milliseconds, in steps that grow, so that a screen reader does
/// not read a new text every second.
QString silenceText(qint64 milliseconds);

} // namespace paravue
