#pragma once

#include "recorder/device/ZoneRule.h"

#include <QByteArray>

namespace recorder
{

class DataFolder;

/// The recorder's wall clock. It starts with the time of this computer and can be set without touching that;
/// by how much it then differs is kept in the data folder.
class RecorderClock
{
public:
    explicit RecorderClock(const DataFolder &folder) : m_folder(folder) {}

    /// Now, as the 14 digits YYYYMMDDHHMMSS, and as a reading for people, in local time.
    QByteArray digits(const ZoneRule &zone) const;
    QByteArray reading(const ZoneRule &zone) const;

    /// False when the text is not a date and time in that form.
    bool set(const QByteArray &digits, const ZoneRule &zone) const;
    /// As a time server would: with the time of this computer.
    void synchronise() const;

    static bool isValid(const QByteArray &digits);

private:
    qint64 localNow(const ZoneRule &zone) const;
    void keepOffset(qint64 seconds) const;

    const DataFolder &m_folder;
};

} // namespace recorder
