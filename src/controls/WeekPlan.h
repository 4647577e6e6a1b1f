#pragma once

#include <QStringList>

#include <array>
#include <string>

namespace paravue
{

struct PlanCell {
    int day = 0; ///< from 0, which is Monday
    int hour = 0;
    bool operator==(const PlanCell &) const = default;
};

/// A rectangle of hours, all ends included.
struct PlanRange {
    PlanCell first;
    PlanCell last;

    static PlanRange between(const PlanCell &a, const PlanCell &b);
    PlanRange united(const PlanRange &other) const;
    bool contains(const PlanCell &cell) const;
    bool operator==(const PlanRange &) const = default;
};

/// What is planned for each hour of a week, in the form in which it is stored: a text for each day, from
/// Monday, with a character for each hour, from midnight.
///
/// Recorders may have stored other texts, and nothing of them is lost: hours behind the end of a short text
/// are blank, characters behind the 24th stay, and an unknown one stays until its hour is set. A text that is
/// not edited stays as it is.
class WeekPlan
{
public:
    static constexpr int Days = 7;
    static constexpr int Hours = 24;
    static constexpr PlanRange Week{{0, 0}, {Days - 1, Hours - 1}};
    static constexpr PlanRange day(int day) { return {{day, 0}, {day, Hours - 1}}; }

    /// The character of an hour for which nothing is planned.
    void setBlank(char32_t blank) { m_blank = blank; }
    char32_t blank() const { return m_blank; }

    /// One text per day; absent ones are empty.
    void setTexts(const QStringList &texts);
    QStringList texts() const;

    char32_t at(const PlanCell &cell) const;
    void fill(const PlanRange &range, char32_t entry);
    /// The characters of all 24 hours of a day, blanks included.
    std::u32string hoursOf(int day) const;
    void setHours(int day, const std::u32string &hours);

    bool operator==(const WeekPlan &) const = default;

private:
    std::array<std::u32string, Days> m_days;
    char32_t m_blank = U'0';
};

} // namespace paravue
