#pragma once

#include "ui/base/ElementRules.h"

#include <QDomElement>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace paravue
{

/// Every element of descriptions that has a meaning of its own, with its attributes and children. All other
/// elements are tags of actions, dialogs, or texts of translations.
class Vocabulary
{
public:
    static const Vocabulary &instance();

    /// The types of items, those of controls and those that only arrange others, in alphabetical order.
    QStringList itemTypes() const { return m_items.keys(); }
    const ElementRule &item(const QString &type) const { return *m_items.constFind(type); }
    /// All elements but items, in alphabetical order. One that stands in several others has the attributes of
    /// all places.
    QList<ElementRule> elements() const { return m_elements.values(); }

    /// What \a element may have; null when its tag, or the type of an item, is unknown.
    const ElementRule *of(const QDomElement &element) const;
    /// True for elements of this vocabulary and for the tags that the window itself looks for.
    bool knows(const QString &tag) const;
    /// The known element that \a tag is probably a slip of; empty when there is none.
    QString nearElement(const QString &tag) const;

private:
    Vocabulary();
    void add(const ElementRule &rule);

    QMap<QString, ElementRule> m_items; ///< by type
    QMap<QString, ElementRule> m_elements;
    QStringList m_words; ///< sorted
};

/// The one of \a words that \a word is probably a slip of: another case, or one or two wrong letters. Empty
/// when there is none.
QString nearWord(const QString &word, const QStringList &words);

} // namespace paravue
