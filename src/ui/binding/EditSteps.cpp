#include "ui/binding/EditSteps.h"

#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDateTimeEdit>
#include <QHash>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QUndoCommand>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

constexpr int MostSteps = 1000;
constexpr qsizetype FewEdits = 8; ///< most gestures write no more, but a list may write thousands

bool isTypedInto(const QWidget *widget)
{
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget);
}

/// True when \a event is a key that the field would take although it has nothing to undo or to redo.
bool isLeftToTheWindow(const QObject &field, const QKeyEvent &event)
{
    // Its text is set anew by every step, so its own history is always empty.
    if (qobject_cast<const QDateTimeEdit *>(&field))
        return event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo);
    const auto *edit = qobject_cast<const QLineEdit *>(&field);
    if (!edit)
        return false;
    return (event.matches(QKeySequence::Undo) && !edit->isUndoAvailable()) ||
           (event.matches(QKeySequence::Redo) && !edit->isRedoAvailable());
}

} // namespace

class EditSteps::Command : public QUndoCommand
{
public:
    Command(EditSteps &steps, QList<ValueEdit> edits, int input)
        : m_steps(steps), m_edits(std::move(edits)), m_input(input)
    {
    }

    int id() const override { return 0; }
    bool mergeWith(const QUndoCommand *command) override
    {
        const auto &later = static_cast<const Command &>(*command);
        const auto hasSamePath = [](const ValueEdit &a, const ValueEdit &b) { return a.path == b.path; };
        if (later.m_input != m_input || !std::equal(m_edits.begin(), m_edits.end(), later.m_edits.begin(),
                                                    later.m_edits.end(), hasSamePath))
            return false;
        bool isEdit = false;
        for (qsizetype i = 0; i < m_edits.size(); ++i) {
            m_edits[i].after = later.m_edits[i].after;
            isEdit = isEdit || m_edits[i].after != m_edits[i].before;
        }
        setObsolete(!isEdit);
        return true;
    }
    void undo() override
    {
        QList<ValueEdit> back = m_edits;
        for (ValueEdit &edit : back)
            std::swap(edit.before, edit.after);
        m_steps.apply(back);
    }
    void redo() override
    {
        // The stack calls it for a step that was just done.
        if (std::exchange(m_isDone, true))
            m_steps.apply(m_edits);
    }

    const QList<ValueEdit> &edits() const { return m_edits; }
    int input() const { return m_input; }

    /// Whether undoing or redoing it sets what \a edits have set.
    bool leadsTo(const QList<ValueEdit> &edits, HistoryMove move) const
    {
        return std::equal(m_edits.begin(), m_edits.end(), edits.begin(), edits.end(),
                          [move](const ValueEdit &own, const ValueEdit &other) {
                              // A control cannot remove a key: it writes what it shows without one.
                              const auto &goal = move == HistoryMove::Undo ? own.before : own.after;
                              return own.path == other.path && (!goal || goal == other.after);
                          });
    }

private:
    EditSteps &m_steps;
    QList<ValueEdit> m_edits;
    const int m_input;
    bool m_isDone = false;
};

EditSteps::EditSteps(OrbSetup &store, std::function<void(const QList<ValueEdit> &)> putBack)
    : m_store(store), m_observed(&store), m_putBack(std::move(putBack))
{
    m_stack.setUndoLimit(MostSteps);
    store.addObserver(*this);
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this] { ++m_input; });
}

EditSteps::~EditSteps()
{
    if (m_observed)
        m_observed->removeObserver(*this);
}

EditSteps::Gesture::Gesture(EditSteps *steps, HistoryMove move) : m_steps(steps)
{
    if (!m_steps || m_steps->m_depth++ > 0)
        return;
    m_steps->finish(); // what the suspended gesture has written so far
    m_steps->dropUnfitting();
    m_steps->m_move = move;
}

EditSteps::Gesture::~Gesture()
{
    if (m_steps && --m_steps->m_depth == 0)
        m_steps->finish();
}

void EditSteps::suspend(const std::function<void()> &wait)
{
    const QScopedValueRollback depth(m_depth, 0);
    wait();
}

void EditSteps::note(const QString &path)
{
    if (m_isApplying || isNoted(path))
        return;
    // Typing writes one value again and again.
    const Command *last = lastStep();
    if (last && last->input() == m_input && last->edits().size() == 1 &&
        last->edits().constFirst().path == path) {
        const std::optional<QString> &before = last->edits().constFirst().after;
        m_edits.append({path, before, before});
        return;
    }
    const ConfigAddress address(path);
    if (!ChangeList::reachesTheRecorder(address))
        return;
    if (m_knownFile != address.file()) {
        const QString file = address.file().toString();
        if (!m_store->fileExists(file))
            return;
        m_knownFile = file;
    }
    const std::optional<QString> before = m_store->storedValue(path);
    m_edits.append({path, before, before});
}

/// The step that is undone next, unless others can be done again; null without one.
const EditSteps::Command *EditSteps::lastStep() const
{
    const int count = m_stack.count();
    return count > 0 && m_stack.index() == count ? static_cast<const Command *>(m_stack.command(count - 1))
                                                 : nullptr;
}

void EditSteps::valueSet(const QString &path, const std::optional<QString> &value)
{
    if (m_edits.size() > FewEdits)
        return; // finish() reads them all
    for (ValueEdit &edit : m_edits) {
        if (edit.path == path)
            edit.after = value;
    }
}

bool EditSteps::isNoted(const QString &path)
{
    if (m_edits.size() < FewEdits) {
        return std::any_of(m_edits.cbegin(), m_edits.cend(),
                           [&path](const ValueEdit &edit) { return edit.path == path; });
    }
    if (m_paths.isEmpty()) {
        for (const ValueEdit &edit : std::as_const(m_edits))
            m_paths.insert(edit.path);
    }
    const qsizetype before = m_paths.size();
    m_paths.insert(path);
    return m_paths.size() == before;
}

void EditSteps::finish()
{
    const HistoryMove move = std::exchange(m_move, HistoryMove::None);
    m_paths.clear();
    QList<ValueEdit> edits = std::exchange(m_edits, {});
    if (edits.size() > FewEdits) {
        for (ValueEdit &edit : edits)
            edit.after = m_store->storedValue(edit.path);
    }
    edits.removeIf([](const ValueEdit &edit) { return edit.before == edit.after; });
    if (edits.isEmpty())
        return;
    if (isNextMove(edits, move)) {
        move == HistoryMove::Undo ? m_stack.undo() : m_stack.redo();
        return;
    }
    m_stack.push(new Command(*this, std::move(edits), m_input));
}

bool EditSteps::isNextMove(const QList<ValueEdit> &edits, HistoryMove move) const
{
    if (move == HistoryMove::None)
        return false;
    const QUndoCommand *next = m_stack.command(m_stack.index() - (move == HistoryMove::Undo ? 1 : 0));
    return next && static_cast<const Command *>(next)->leadsTo(edits, move);
}

void EditSteps::apply(const QList<ValueEdit> &edits)
{
    if (m_isApplying)
        return; // the steps are only put in order
    {
        const QScopedValueRollback applying(m_isApplying, true);
        m_putBack(edits);
    }
    Q_EMIT moved(edits);
}

QUndoStack &EditSteps::stack()
{
    if (m_depth == 0)
        finish();
    dropUnfitting();
    return m_stack;
}

std::optional<QString> EditSteps::storedValue(const QString &path) const
{
    const bool hasFile = m_store->fileExists(ConfigAddress(path).file().toString());
    return hasFile ? m_store->storedValue(path) : std::nullopt;
}

/// A step leads from one value to the next. A file that was replaced may hold another one, so that the step
/// would undo what somebody else has done. Steps whose values are what they were stay.
void EditSteps::dropUnfitting()
{
    if (!std::exchange(m_isReplaced, false))
        return;
    const int index = m_stack.index();
    QList<Command *> kept;
    QHash<QString, std::optional<QString>> values; // between two steps, where they are not those of the store
    const auto keepIfFits = [&](int number, auto from, auto to) {
        const auto &command = static_cast<const Command &>(*m_stack.command(number));
        const QList<ValueEdit> &edits = command.edits();
        const bool fits = std::all_of(edits.begin(), edits.end(), [&](const ValueEdit &edit) {
            const auto known = values.constFind(edit.path);
            return (known == values.cend() ? storedValue(edit.path) : *known) == edit.*from;
        });
        if (!fits)
            return false;
        for (const ValueEdit &edit : edits)
            values.insert(edit.path, edit.*to);
        kept << new Command(*this, edits, -1 - number);
        return true;
    };
    for (int number = index - 1; number >= 0; --number)
        keepIfFits(number, &ValueEdit::after, &ValueEdit::before);
    std::reverse(kept.begin(), kept.end());
    values.clear();
    int undone = 0;
    for (int number = index; number < m_stack.count(); ++number)
        undone += keepIfFits(number, &ValueEdit::before, &ValueEdit::after) ? 1 : 0;
    m_stack.clear();
    for (Command *command : std::as_const(kept))
        m_stack.push(command);
    const QScopedValueRollback rebuilding(m_isApplying, true);
    m_stack.setIndex(m_stack.count() - undone);
}

bool EditSteps::eventFilter(QObject *watched, QEvent *event)
{
    const auto type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
        (type == QEvent::KeyPress && !isTypedInto(QApplication::focusWidget())))
        ++m_input;
    if (type == QEvent::ShortcutOverride && isLeftToTheWindow(*watched, *static_cast<QKeyEvent *>(event))) {
        event->ignore();
        return true;
    }
    return false;
}

} // namespace paravue
