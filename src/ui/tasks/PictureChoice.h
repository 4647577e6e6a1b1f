#pragma once

#include <QtGlobal>

#include <optional>

namespace paravue
{

/// Which pictures of one live stream a window shows.
///
/// The receivers show half of the pictures, counted over all of them. With eight equal cameras the same four
/// of them would show all their pictures, and the others none, or some when pictures come a little early or
/// late. So a camera of which half a second is missing shows every second picture until the count has made up
/// for it: when it has shown fewer pictures than it has left out, by as many as usually come in that time, or
/// has shown none for so long.
class PictureChoice
{
public:
    /// Whether to show the next picture. \a isInTurn: the count shows it. \a now is in milliseconds.
    bool takes(bool isInTurn, qint64 now);

private:
    static constexpr qint64 LongestGap = 500;
    static constexpr int MostMissing = 12; ///< of 25 a second

    std::optional<qint64> m_lastTaken; ///< or the first picture
    int m_missing = 0;                 ///< how many more were left out than shown
    bool m_tookLast = false;
};

} // namespace paravue
