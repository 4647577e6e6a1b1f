#pragma once

#include <QString>

#include <vector>

namespace paravue
{

/// The mask of an edit field, in the form that QLineEdit::setInputMask() takes.
class ValueMask
{
public:
    explicit ValueMask(const QString &mask);

    /// True for what a field with this mask gives when it is complete: its text without the blanks.
    bool matches(const QString &text) const;

private:
    enum class Case { Any, Upper, Lower };
    /// One letter of a complete text.
    struct Place {
        QChar kind;    ///< the letter of the mask
        bool isLetter; ///< it stands for itself
        Case letterCase;
    };

    static bool isOptional(const Place &place);
    static bool accepts(const Place &place, QChar letter);

    std::vector<Place> m_places;
};

} // namespace paravue
