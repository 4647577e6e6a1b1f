#include "ui/review/ChangeTracking.h"

#include "controls/OrbDlgQuestion.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/ControlTable.h"
#include "ui/review/FindDialog.h"
#include "ui/review/FindIndex.h"
#include "ui/review/ReviewDialog.h"

#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <limits>

namespace paravue
{

ChangeTracking::ChangeTracking(QWidget &window, OrbSetup &store, Bindings &bindings, ControlTable &controls)
    : m_window(window), m_bindings(bindings), m_store(store), m_controls(controls), m_places(controls),
      m_list(store), m_steps(store, [this](const QList<ValueEdit> &edits) { m_bindings.putBack(edits); }),
      m_problems(controls), m_count(new QToolButton(&window))
{
    m_count->setObjectName(QStringLiteral("changes"));
    m_count->setAutoRaise(true);
    m_count->setFocusPolicy(Qt::TabFocus);
    m_count->setToolTip(tr("Show what was changed and not sent yet, and what is wrong (Ctrl+R)"));
    m_count->hide();
    bindings.setEditSteps(&m_steps);
    connect(m_count, &QToolButton::clicked, this, &ChangeTracking::reviewRequested);
    connect(&m_list, &ChangeList::changed, this, &ChangeTracking::noteChange);
    connect(&m_list, &ChangeList::dropped, this, &ChangeTracking::markAll);
    bindings.setControlObserver([this](const Control &control) { m_problems.check(control); });
    connect(&m_problems, &FieldProblems::changed, this, [this](QWidget *field, bool hasProblem) {
        if (field)
            m_badges.add(TabBadges::Problems, *field, hasProblem ? 1 : -1);
        showCount();
    });
    connect(&m_steps, &EditSteps::moved, this,
            [this](const QList<ValueEdit> &edits) { goTo(edits.constFirst().path); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_R), &window), &QShortcut::activated, this,
            &ChangeTracking::reviewRequested);
    connect(new QShortcut(QKeySequence::Find, &window), &QShortcut::activated, this,
            &ChangeTracking::findRequested);
    connect(new QShortcut(QKeySequence::Undo, &window), &QShortcut::activated, this, &ChangeTracking::undo);
    for (const bool isBackwards : {false, true}) {
        const QKeyCombination keys(isBackwards ? Qt::ShiftModifier : Qt::NoModifier, Qt::Key_F8);
        connect(new QShortcut(keys, &window), &QShortcut::activated, this,
                [this, isBackwards] { goToNextProblem(isBackwards); });
    }
    for (const QKeyCombination keys : {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y})
        connect(new QShortcut(keys, &window), &QShortcut::activated, this, &ChangeTracking::redo);
}

ChangeTracking::~ChangeTracking()
{
    m_bindings.setEditSteps(nullptr);
    m_bindings.setControlObserver({});
}

void ChangeTracking::startDescription()
{
    m_hostChanges = m_list.all();
    m_problems.forgetRemoved();
    markAll();
}

void ChangeTracking::noteChange(const QString &path)
{
    const bool isChanged = m_list.find(path);
    for (const Control *control : m_places.editors(path)) {
        if (ChangePlaces::isSecretField(*control))
            m_list.secrets().mark(path);
        m_marks.set(*control, path, isChanged);
    }
    showCount();
}

void ChangeTracking::markAll()
{
    m_marks.clear();
    for (const Change &change : m_list.all())
        noteChange(change.path);
    showCount();
}

void ChangeTracking::showCount()
{
    QStringList parts;
    if (!m_list.isEmpty())
        parts << TabBadges::changesText(m_list.count());
    if (hasProblems())
        parts << TabBadges::problemsText(m_problems.count());
    m_count->setText(parts.join(QStringLiteral(", ")));
    m_count->setVisible(!parts.isEmpty());
}

void ChangeTracking::noteSaved(const QStringList &arrived)
{
    QList<Change> sent;
    QList<Change> missing; // the user may send them later
    for (const Change &change : std::as_const(m_sent))
        (arrived.contains(ConfigAddress(change.path).file().toString()) ? sent : missing) << change;
    m_sent = missing;
    m_list.accept(sent);
}

QString ChangeTracking::caption(const QString &path) const
{
    const QList<const Control *> editors = m_places.editors(path);
    return editors.isEmpty() ? path : ChangePlaces::caption(*editors.constFirst());
}

QList<ReviewedChange> ChangeTracking::reviewed() const
{
    QList<ReviewedChange> all;
    for (const Change &change : m_list.all()) {
        const QList<const Control *> editors = m_places.editors(change.path);
        if (editors.isEmpty()) {
            all.append({change, QString(), std::numeric_limits<int>::max(), false});
        } else {
            const Control &first = *editors.constFirst();
            all.append({change, ChangePlaces::caption(first), first.number, true});
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const ReviewedChange &a, const ReviewedChange &b) { return a.order < b.order; });
    return all;
}

QList<ReviewedProblem> ChangeTracking::problems() const
{
    QList<ReviewedProblem> all;
    for (const int number : m_problems.controls()) {
        if (const Control *control = m_controls.find(number); control && control->widget)
            all.append({ChangePlaces::caption(*control), m_problems.problemOf(number), number});
    }
    return all;
}

bool ChangeTracking::askAboutProblems() const
{
    const OrbDlgQuestion::Captions captions{{QMessageBox::Yes, tr("Show the problem")},
                                            {QMessageBox::Ignore, tr("Send all the same")},
                                            {QMessageBox::Cancel, tr("Go on editing")}};
    const QList<ReviewedProblem> left = problems();
    if (left.isEmpty())
        return true;
    const ReviewedProblem &first = left.constFirst();
    const auto answer = OrbDlgQuestion::DoExplained(
        &m_window, QMessageBox::Warning, m_window.windowTitle(),
        tr("There are fields with values that the recorder may refuse."),
        left.size() == 1 ? first.line() : tr("%1\nand %2 more").arg(first.line()).arg(left.size() - 1),
        QMessageBox::Yes | QMessageBox::Ignore | QMessageBox::Cancel, QMessageBox::Yes, nullptr, captions);
    if (answer == QMessageBox::Yes)
        goToControl(first.control);
    return answer == QMessageBox::Ignore;
}

ChangeTracking::Answer ChangeTracking::askBeforeClosing() const
{
    const bool isFile = m_store->property("savesToFile").toBool(); // a snapshot without its recorder
    const OrbDlgQuestion::Captions captions{{QMessageBox::Save, isFile ? tr("Save") : tr("Send")},
                                            {QMessageBox::Discard, tr("Discard")},
                                            {QMessageBox::Cancel, tr("Go on editing")}};
    const auto answer = OrbDlgQuestion::DoExplained(
        &m_window, QMessageBox::Question, m_window.windowTitle(),
        isFile ? tr("There are changes that were not saved.")
               : tr("There are changes that were not sent to the recorder."),
        m_count->text(), QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel,
        nullptr, captions);
    if (answer == QMessageBox::Save)
        return Answer::Send;
    return answer == QMessageBox::Discard ? Answer::Discard : Answer::GoOnEditing;
}

void ChangeTracking::takeBack(const QStringList &paths)
{
    QList<ValueEdit> edits;
    for (const QString &path : paths)
        edits.append({path, {}, m_list.oldValue(path)});
    apply(edits);
}

void ChangeTracking::apply(const QList<ValueEdit> &edits)
{
    const EditSteps::Gesture gesture(&m_steps);
    for (const ValueEdit &edit : edits)
        m_steps.note(edit.path);
    m_bindings.putBack(edits);
}

void ChangeTracking::goTo(const QString &path) const
{
    const QList<const Control *> editors = m_places.editors(path);
    if (!editors.isEmpty())
        ChangePlaces::show(*editors.constFirst());
}

void ChangeTracking::goToControl(int number) const
{
    const Control *control = m_controls.find(number);
    if (control && control->widget)
        ChangePlaces::show(*control);
}

void ChangeTracking::goToNextProblem(bool isBackwards) const
{
    int focused = -1;
    for (const QWidget *widget = m_window.focusWidget(); widget && focused < 0;
         widget = widget->parentWidget()) {
        if (const Control *control = m_controls.of(widget))
            focused = control->number;
    }
    goToControl(m_problems.next(focused, isBackwards));
}

void ChangeTracking::find(const std::function<void(QDialog &)> &run)
{
    const FindIndex index(m_controls, *m_store, m_list, m_problems);
    FindDialog dialog(index, &m_window);
    run(dialog);
    goToControl(dialog.chosenControl());
}

void ChangeTracking::undo()
{
    m_steps.stack().undo();
}

void ChangeTracking::redo()
{
    m_steps.stack().redo();
}

} // namespace paravue
