#include "controls/EditHistory.h"

#include <QUndoCommand>

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

/// What differs in one of the texts.
struct TextChange {
    qsizetype text;
    qsizetype at;
    QString before;
    QString after;
};

TextChange change(qsizetype text, const QString &before, const QString &after)
{
    const auto [end, endAfter] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const qsizetype same = end - before.begin();
    const qsizetype most = std::min(before.size(), after.size()) - same;
    qsizetype sameBehind = 0;
    while (sameBehind < most &&
           before[before.size() - 1 - sameBehind] == after[after.size() - 1 - sameBehind])
        ++sameBehind;
    return {text, same, before.mid(same, before.size() - same - sameBehind),
            after.mid(same, after.size() - same - sameBehind)};
}

class HistoryStep : public QUndoCommand
{
public:
    HistoryStep(QStringList &texts, const QList<TextChange> &changes) : m_texts(texts), m_changes(changes) {}

    void undo() override
    {
        for (const TextChange &change : m_changes)
            m_texts[change.text].replace(change.at, change.after.size(), change.before);
    }

    void redo() override
    {
        // A stack redoes a command that is pushed; this one was done by the user.
        if (!std::exchange(m_isPushed, true))
            return;
        for (const TextChange &change : m_changes)
            m_texts[change.text].replace(change.at, change.before.size(), change.after);
    }

private:
    QStringList &m_texts;
    QList<TextChange> m_changes;
    bool m_isPushed = false;
};

} // namespace

void EditHistory::record(const QStringList &before, const QStringList &after)
{
    QList<TextChange> changes;
    for (qsizetype text = 0; text < before.size(); ++text) {
        if (before[text] != after[text])
            changes.append(change(text, before[text], after[text]));
    }
    m_steps.push(new HistoryStep(m_texts, changes));
}

QStringList EditHistory::undo(const QStringList &texts)
{
    m_texts = texts;
    m_steps.undo();
    return std::exchange(m_texts, {});
}

QStringList EditHistory::redo(const QStringList &texts)
{
    m_texts = texts;
    m_steps.redo();
    return std::exchange(m_texts, {});
}

} // namespace paravue
