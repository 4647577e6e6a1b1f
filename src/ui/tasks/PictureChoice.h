#pragma once

#include <QtGlobal>

#include <optional>

namespace paravue
{

/// Which pictures of one live stream a window shows.
///
/// The receivers show half of the pictures, counted over all of them. With eight equal cameras the same four
/// of them would show all their pictures, and the others none. So a camera of which no picture was shown for
/// half a second shows every second one until the count shows four in a row.
class PictureChoice
{
public:
    /// Whether to show the next picture. \a isInTurn: the count shows it. \a now is in milliseconds.
    bool takes(bool isInTurn, qint64 now);

private:
    static constexpr qint64 LongestGap = 500;
    static constexpr int WholeTurn = 4;

    std::optional<qint64> m_lastTaken; ///< or the first picture
    bool m_isHelping = false;
    bool m_tookLast = false;
    int m_inTurn = 0; ///< in a row
};

} // namespace paravue
