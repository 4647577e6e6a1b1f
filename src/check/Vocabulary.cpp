#include "check/Vocabulary.h"

#include "check/ElementNames.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/DialogTags.h"
#include "ui/page/GridCell.h"
#include "ui/tasks/TimeTasks.h"
#include "ui/types/ControlTypes.h"

#include <algorithm>

namespace paravue
{
namespace
{

/// The elements around the items.
QList<ElementRule> frameRules()
{
    using Rule = AttributeRule;
    const QList<AttributeRule> call{{typeName, Rule::Text, {"call", "enable", "disable"}},
                                    {"slot", Rule::Text},
                                    {"param", Rule::Text},
                                    {"state", Rule::Text},
                                    {"danger", Rule::Text, {"data", "restart"}}};
    return {
        {"pvsetup",
         {{"version", Rule::Text, {"1.0"}}},
         {"window", "buttonOK", "buttonCancel", "tabwidget", "translations", "di"}},
        {"window", controlAttributes(), {"width", "height", "title", "model", "tooltip", "timetask"}},
        {"buttonOK", {}, {"text", "tooltip", "action"}},
        {"buttonCancel", {}, {"text"}},
        {"tabwidget", {}, {"tabposition", "tab", "selection"}},
        {"tab", {}, {"name", itemTag}},
        {"di", {}, {"difile"}},
        {"difile",
         {{"name", Rule::Text},
          {"get_command", Rule::Text},
          {"put_command", Rule::Text},
          {typeName, Rule::Text, {"inifile", "sectionless", "state"}}}},
        {"action", call},
        TimeTasks::rule(),
        stretchRule(),
        {"regexp_key"},
        {"translations"},
    };
}

QList<ElementRule> childrenOf(const ControlAdapter &adapter)
{
    QList<ElementRule> children = adapter.traits().children;
    for (const KeyRule &key : adapter.traits().keys) {
        for (const QString &tag : {key.tag, key.countTag}) {
            if (!tag.isEmpty())
                children.append({tag});
        }
    }
    return children + QList<ElementRule>{{"tooltip"}, {"help"}, {"unit"}, {"action"}};
}

/// The tags that the window itself looks for.
QStringList windowTags()
{
    using namespace dialogtags;
    return {QStringLiteral("accesslist"),
            QStringLiteral("softlist"),
            Progress,
            User,
            UserNameTaken,
            UserNotAllowed,
            UserNameEmpty,
            PasswordsDiffer,
            LastUser,
            PackageNeeded,
            RemovePackage,
            ExportFailed};
}

bool hasSingleValues(const ControlTraits &traits)
{
    return std::any_of(traits.keys.begin(), traits.keys.end(), [](const KeyRule &key) {
        return key.form == KeyRule::Value || key.form == KeyRule::Assignment;
    });
}

constexpr qsizetype LongestWord = 32; // that is compared with others

/// How many letters must be changed, added, left out or swapped with their neighbour to make the one word
/// from the other (the restricted Damerau-Levenshtein distance).
int distance(QStringView a, QStringView b)
{
    int cost[LongestWord + 1][LongestWord + 1];
    for (qsizetype i = 0; i <= a.size(); ++i) {
        for (qsizetype j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = int(i + j);
                continue;
            }
            const int change = a[i - 1] == b[j - 1] ? 0 : 1;
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    }
    return cost[a.size()][b.size()];
}

} // namespace

QString nearWord(const QString &word, const QStringList &words)
{
    constexpr qsizetype ShortWord = 5;
    if (word.size() > LongestWord)
        return {};
    const QString lowered = word.toLower();
    QString best;
    int least = 0;
    for (const QString &known : words) {
        const int allowed = std::min(word.size(), known.size()) < ShortWord ? 1 : 2;
        if (word == known || qAbs(word.size() - known.size()) > allowed || known.size() > LongestWord)
            continue;
        const int cost = distance(lowered, known.toLower());
        if (cost <= allowed && (best.isEmpty() || cost < least)) {
            best = known;
            least = cost;
        }
    }
    return best;
}

const Vocabulary &Vocabulary::instance()
{
    static const Vocabulary vocabulary;
    return vocabulary;
}

Vocabulary::Vocabulary()
{
    for (const ElementRule &rule : frameRules())
        add(rule);
    const QList<AttributeRule> place =
        QList<AttributeRule>{{typeName, AttributeRule::Text}} + cellAttributes();
    m_items["gridlayout"] = {itemTag, place + layoutAttributes(LayoutItem::Grid), {itemTag, "stretch"}};
    m_items["spacer"] = {itemTag, place + layoutAttributes(LayoutItem::Spacer), {}};
    forEachControlType([&](const QString &type, const ControlAdapter &adapter) {
        ElementRule &item = m_items[type];
        item = {itemTag, place + controlAttributes() + adapter.traits().attributes, {}};
        if (hasSingleValues(adapter.traits()))
            item.attributes.append(secretRule());
        for (const ElementRule &child : childrenOf(adapter)) {
            add(child);
            item.children.append(child.tag);
        }
    });
    // What stands in others without attributes of its own.
    const QList<ElementRule> known = m_elements.values();
    for (const ElementRule &element : known) {
        for (const QString &child : element.children) {
            if (child != itemTag)
                add({child});
        }
    }
    m_words = m_elements.keys() + windowTags() + QStringList{itemTag};
    m_words.sort();
}

void Vocabulary::add(const ElementRule &rule)
{
    ElementRule &known = m_elements[rule.tag];
    known.tag = rule.tag;
    for (const AttributeRule &attribute : rule.attributes) {
        const auto isSame = [&](const AttributeRule &other) { return other.name == attribute.name; };
        if (std::none_of(known.attributes.cbegin(), known.attributes.cend(), isSame))
            known.attributes.append(attribute);
    }
    for (const QString &child : rule.children) {
        if (!known.children.contains(child))
            known.children.append(child);
    }
}

const ElementRule *Vocabulary::of(const QDomElement &element) const
{
    const bool isItem = element.tagName() == itemTag;
    const auto &rules = isItem ? m_items : m_elements;
    const auto found = rules.constFind(isItem ? element.attribute(typeName) : element.tagName());
    return found == rules.constEnd() ? nullptr : &*found;
}

bool Vocabulary::knows(const QString &tag) const
{
    return std::binary_search(m_words.cbegin(), m_words.cend(), tag);
}

QString Vocabulary::nearElement(const QString &tag) const
{
    return nearWord(tag, m_words);
}

} // namespace paravue
