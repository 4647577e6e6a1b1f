#include "ui/description/ValueMask.h"

#include <utility>

namespace paravue
{

namespace
{

const QString Kinds = QStringLiteral("AaNnXx90Dd#HhBb");
const QString OptionalKinds = QStringLiteral("anx0d#hb");
const QString Reserved = QStringLiteral("[]{}!");

bool isDigit(QChar letter, QChar least, QChar most)
{
    return letter >= least && letter <= most;
}

bool isHexadecimal(QChar letter)
{
    return isDigit(letter, u'0', u'9') || isDigit(letter.toLower(), u'a', u'f');
}

} // namespace

ValueMask::ValueMask(const QString &mask)
{
    // What follows a ";" is shown where nothing was typed yet.
    const qsizetype end = mask.lastIndexOf(u';');
    Case letterCase = Case::Any;
    bool isEscaped = false;
    for (const QChar letter : mask.left(end)) {
        if (std::exchange(isEscaped, false))
            m_places.push_back({letter, true, Case::Any});
        else if (letter == u'\\')
            isEscaped = true;
        else if (letter == u'>' || letter == u'<')
            letterCase = letter == u'>' ? Case::Upper : Case::Lower;
        else if (letter == u'!')
            letterCase = Case::Any;
        else if (!Reserved.contains(letter))
            m_places.push_back({letter, !Kinds.contains(letter), letterCase});
    }
}

bool ValueMask::isOptional(const Place &place)
{
    return !place.isLetter && OptionalKinds.contains(place.kind);
}

bool ValueMask::accepts(const Place &place, QChar letter)
{
    if (place.isLetter)
        return letter == place.kind;
    if ((place.letterCase == Case::Upper && letter.isLower()) ||
        (place.letterCase == Case::Lower && letter.isUpper()))
        return false;
    switch (place.kind.toLower().unicode()) {
    case u'a':
        return letter.isLetter();
    case u'n':
        return letter.isLetterOrNumber();
    case u'x':
        return letter.isPrint();
    case u'9':
    case u'0':
        return letter.isNumber();
    case u'd':
        return isDigit(letter, u'1', u'9');
    case u'#':
        return letter.isNumber() || letter == u'+' || letter == u'-';
    case u'h':
        return isHexadecimal(letter);
    default:
        return isDigit(letter, u'0', u'1');
    }
}

bool ValueMask::matches(const QString &text) const
{
    // Which places may be the next one, behind each letter of the text.
    std::vector<bool> next(m_places.size() + 1);
    next[0] = true;
    const auto skipOptional = [&] {
        for (size_t i = 0; i < m_places.size(); ++i)
            next[i + 1] = next[i + 1] || (next[i] && isOptional(m_places[i]));
    };
    skipOptional();
    for (const QChar letter : text) {
        std::vector<bool> following(next.size());
        for (size_t i = 0; i < m_places.size(); ++i)
            following[i + 1] = next[i] && accepts(m_places[i], letter);
        next.swap(following);
        skipOptional();
    }
    return next.back();
}

} // namespace paravue
