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
        Limit,     ///< a decimal number; anything else is no limit
        Word,      ///< one of some words; anything else counts as the first of them
        Character, ///< just one character
        Pattern,   ///< a regular expression
        Text,      ///< anything
    };

    QString name;
    Kind kind = Number;
    QStringList words = {}; ///< of a Text: those that somebody else checks
};

/// What elements with one tag may have.
struct ElementRule {
    QString tag;
    QList<AttributeRule> attributes = {};
    QStringList children = {};
};

} // namespace paravue
