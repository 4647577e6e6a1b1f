#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace paravue
{

/// What an attribute of the description may hold.
struct AttributeRule {
    enum Kind {
        Number,    ///< a decimal number; anything else counts as 0
        Word,      ///< one of some words; anything else counts as the first of them
        Character, ///< just one character
        Pattern,   ///< a regular expression
        Text,      ///< anything
    };

    QString name;
    Kind kind = Number;
    QStringList words = {};
};

/// The attributes of all elements with one tag.
struct ElementRule {
    QString tag;
    QList<AttributeRule> attributes;
};

} // namespace paravue
