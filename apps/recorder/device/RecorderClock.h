#pragma once

#include "recorder/device/ZoneRule.h"

#include <QByteArray>

#include <functional>

namespace recorder
{

class DataFolder;

/// The recorder's wall clock. Setting it does not change the clock of this computer: the difference between
/// the two is stored in the data folder.
class RecorderClock
{
public:
    explicit RecorderClock(const DataFolder &folder);

    /// Replaces the clock of this computer by a function that returns the seconds since 1970 (UTC).
    void setSource(std::function<qint64()> source) { m_source = std::move(source); }

    /// The local time, as the 14 digits YYYYMMDDHHMMSS and in readable form.
    QByteArray digits(const ZoneRule &zone) const;
    QByteArray reading(const ZoneRule &zone) const;

    /// False when the text is not a date and time in that form.
    bool set(const QByteArray &digits, const ZoneRule &zone) const;
    /// Sets it to the time of this computer, in place of a time server.
    void synchronise() const;

    static bool isValid(const QByteArray &digits);

private:
    qint64 localNow(const ZoneRule &zone) const;
    void keepOffset(qint64 seconds) const;

    const DataFolder &m_folder;
    std::function<qint64()> m_source;
};

} // namespace recorder
