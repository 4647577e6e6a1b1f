#pragma once

#include <QStringList>

#include <array>
#include <string>

namespace paravue
{

/// A place in a week. The slots of a day are hours, halves or quarters of hours, from midnight.
struct PlanCell {
    int day = 0; ///< from 0, which is Monday
    int slot = 0;
    bool operator==(const PlanCell &) const = default;
};

/// A rectangle of slots, all ends included.
struct PlanRange {
    PlanCell first;
    PlanCell last;

    static PlanRange between(const PlanCell &a, const PlanCell &b);
    PlanRange united(const PlanRange &other) const;
    bool contains(const PlanCell &cell) const;
    bool operator==(const PlanRange &) const = default;
};

/// What is planned for each hour, half or quarter of an hour of a week, in the form in which it is stored: a
/// text for each day, from Monday, with 24, 48 or 96 characters, one for each slot.
///
/// All days are shown in the slots of the finest one. A coarser day, or one for which nothing is stored, gets
/// these slots when it is edited. A text of any other length may mean anything: its day has no entries, and
/// it stays as it is until replace().
class WeekPlan
{
public:
    static constexpr int Days = 7;
    static constexpr int Hours = 24;
    static constexpr int MostSlotsPerHour = 4;
    static bool isSlotsPerHour(int slots) { return slots == 1 || slots == 2 || slots == MostSlotsPerHour; }

    /// The character of a slot for which nothing is planned.
    void setBlank(char32_t blank) { m_blank = blank; }
    char32_t blank() const { return m_blank; }
    /// 1, 2 or 4; more when a stored day has more.
    void setLeastSlotsPerHour(int slots) { m_leastSlotsPerHour = slots; }

    /// One text per day; absent ones are empty.
    void setTexts(const QStringList &texts);
    QStringList texts() const;

    int slotsPerHour() const;
    int slotsPerDay() const { return Hours * slotsPerHour(); }
    PlanRange day(int day) const { return {{day, 0}, {day, slotsPerDay() - 1}}; }
    PlanRange week() const { return {{0, 0}, {Days - 1, slotsPerDay() - 1}}; }

    /// False when the stored text has a length that means nothing here.
    bool isUnderstood(int day) const { return m_days[day].text.isEmpty() || !m_days[day].entries.empty(); }
    /// How many characters are stored for a day.
    qsizetype length(int day) const { return m_days[day].length; }

    char32_t at(const PlanCell &cell) const;
    /// Whether a slot of any day has this entry.
    bool contains(char32_t entry) const;
    /// Days that are not understood are left out.
    void fill(const PlanRange &range, char32_t entry);
    /// The runs of equal entries of a day, blanks included; none when it is not understood.
    QList<PlanRange> runsOf(int day) const;
    /// The characters of all slots of a day, blanks included.
    std::u32string entriesOf(int day) const;
    /// \a entries has slotsPerDay() characters. Does nothing when the day is not understood.
    void setEntries(int day, const std::u32string &entries);
    /// Makes a day blank, also one that is not understood.
    void replace(int day);

    bool operator==(const WeekPlan &) const = default;

private:
    struct Day {
        QString text; ///< as it is stored
        qsizetype length = 0;
        std::u32string entries; ///< empty when nothing is stored or the text is not understood
        bool operator==(const Day &) const = default;
    };

    static Day read(const QString &text);
    void write(int day, const std::u32string &entries);

    std::array<Day, Days> m_days;
    char32_t m_blank = U'0';
    int m_leastSlotsPerHour = 1;
};

} // namespace paravue
