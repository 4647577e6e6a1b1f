#include "ui/review/ChangeTracking.h"

#include "changes/DescribedSecrets.h"
#include "changes/PositionLists.h"
#include "controls/OrbDlgQuestion.h"
#include "controls/OwnTexts.h"
#include "controls/PtzCalibrator.h"
#include "store/ConfigAddress.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/review/FindIndex.h"
#include "ui/review/ReviewDialog.h"

#include <QApplication>
#include <QDialog>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace paravue
{

namespace
{

/// What is known of the secrets may have changed since.
bool areSame(const QList<Change> &a, const QList<Change> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Change &one, const Change &other) {
        return one.path == other.path && one.oldValue == other.oldValue && one.newValue == other.newValue;
    });
}

} // namespace

ChangeTracking::ChangeTracking(QWidget &window, ControlContext &context, Bindings &bindings,
                               AdapterLookup adapterOf)
    : m_window(window), m_bindings(bindings), m_context(context), m_adapterOf(adapterOf),
      m_controls(context.description().table()), m_places(m_controls), m_list(context.store()),
      m_steps(context.store(), [this](const QList<ValueEdit> &edits) { m_bindings.putBack(edits); }),
      m_problems(m_controls), m_count(new QToolButton(&window))
{
    m_count->setObjectName(QStringLiteral("changes"));
    m_count->setAutoRaise(true);
    m_count->setFocusPolicy(Qt::TabFocus);
    keepTranslated(*m_count, [this] {
        m_count->setToolTip(tr("Show what was changed and not sent yet, and what is wrong (Ctrl+R)"));
        showCount();
    });
    bindings.setEditSteps(&m_steps);
    connect(m_count, &QToolButton::clicked, this, &ChangeTracking::reviewRequested);
    connect(&context.store(), &OrbSetup::storeDone, this, [this] {
        if (isOfAFile())
            m_keptChanges = m_list.all();
    });
    connect(&m_list, &ChangeList::changed, this, &ChangeTracking::noteChange);
    connect(&m_list, &ChangeList::dropped, this, &ChangeTracking::markAll);
    bindings.setControlObserver([this](const Control &control) { m_problems.check(control); });
    connect(&m_problems, &FieldProblems::changed, this, [this](QWidget *field, bool hasProblem) {
        if (field)
            m_badges.add(TabBadges::Problems, *field, hasProblem ? 1 : -1);
        showCount();
    });
    connect(&m_steps, &EditSteps::moved, this,
            [this](const QList<ValueEdit> &edits) { showMoved(edits.constFirst().path); });
    addKeys(window);
}

ChangeTracking::~ChangeTracking()
{
    m_bindings.setEditSteps(nullptr);
    m_bindings.setControlObserver({});
}

void ChangeTracking::startDescription()
{
    m_list.addEarlierEdits();
    if (!std::exchange(m_isStarted, true))
        m_keptChanges = m_list.all();
    m_list.secrets().setSource([this] { return describedSecrets(descriptionText()); });
    m_described.reset();
    m_problems.forgetRemoved();
    markAll();
}

QByteArray ChangeTracking::descriptionText() const
{
    const QString name = QStringLiteral("interface");
    OrbSetup &store = m_context.store();
    QByteArray description;
    if (store.fileExists(name))
        InterfaceDocument::read(store.filePath(name), description);
    return description;
}

bool ChangeTracking::isOfAFile() const
{
    return m_context.store().property("savesToFile").toBool();
}

/// A recorder has its own values still when all changes were taken back; a snapshot has the edits.
bool ChangeTracking::hasUserChanges() const
{
    return (!m_list.isEmpty() || isOfAFile()) && !areSame(m_list.all(), m_keptChanges);
}

bool ChangeTracking::isLostByFetching() const
{
    return isOfAFile() ? hasUserChanges() : !m_list.isEmpty();
}

bool ChangeTracking::isAllGivenToASave() const
{
    return m_sent && areSame(m_list.all(), *m_sent);
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
    for (const Change &change : m_sent.value_or(QList<Change>()))
        (arrived.contains(ConfigAddress(change.path).file().toString()) ? sent : missing) << change;
    if (m_sent)
        m_sent = missing;
    m_list.accept(sent);
}

void ChangeTracking::noteUnanswered(const QString &name)
{
    QList<Change> sent = m_sent.value_or(QList<Change>());
    sent.removeIf([&name](const Change &change) { return ConfigAddress(change.path).file() != name; });
    m_list.doubt(sent);
}

const DescribedItems &ChangeTracking::described() const
{
    if (!m_described)
        m_described.emplace(m_context, m_adapterOf);
    return *m_described;
}

void ChangeTracking::updateTexts()
{
    m_described.reset();
    m_badges.updateNames();
    showCount();
}

/// The name of a user who was removed is that which the recorder has.
QString ChangeTracking::valueName(const ControlAdapter &editor, const QString &path) const
{
    return editor.valueName(path, [this](const QString &other) {
        OrbSetup &store = m_context.store();
        if (!store.fileExists(ConfigAddress(other).file().toString()))
            return QString();
        const QString present = store.storedValue(other).value_or(QString());
        return present.isEmpty() ? m_list.oldValue(other).value_or(QString()) : present;
    });
}

QString ChangeTracking::caption(const QString &path) const
{
    const QList<const Control *> editors = m_places.editors(path);
    if (!editors.isEmpty())
        return ChangePlaces::caption(*editors.constFirst(), valueName(*editors.constFirst()->adapter, path));
    const DescribedItem *item = described().editorInDialog(path);
    return item ? item->fullCaption(described().dialogs(), valueName(*item->adapter, path)) : path;
}

bool ChangeTracking::isEditable(const QString &path) const
{
    return !m_places.editors(path).isEmpty() || described().editorInDialog(path);
}

QList<ReviewedChange> ChangeTracking::reviewed() const
{
    constexpr int BehindTheWindow = std::numeric_limits<int>::max() / 2;
    std::optional<DialogRoutes> routes; // found when a value is edited in none of the open pages
    QList<ReviewedChange> all;
    for (const Change &change : m_list.all()) {
        const QList<const Control *> editors = m_places.editors(change.path);
        if (!editors.isEmpty()) {
            const Control &first = *editors.constFirst();
            all.append({change, ChangePlaces::caption(first, valueName(*first.adapter, change.path)),
                        first.number, true});
            continue;
        }
        if (!routes)
            routes.emplace(m_window, m_controls, described());
        if (const DescribedItem *item = described().editorInDialog(change.path)) {
            const int order = BehindTheWindow + int(item - described().items().data());
            const QString name = valueName(*item->adapter, change.path);
            all.append({change, item->fullCaption(described().dialogs(), name), order,
                        routes->to(item->dialog).begin >= 0});
        } else {
            all.append({change, QString(), std::numeric_limits<int>::max(), false});
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const ReviewedChange &a, const ReviewedChange &b) { return a.order < b.order; });
    if (!all.isEmpty() && !isOfAFile()) { // a snapshot keeps the directives as they are
        for (const Change &change : m_list.pendingChanges())
            all.append({change, tr("Follows from other values"), 0, false, false});
    }
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

bool ChangeTracking::askAboutProblems()
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

/// A line for each camera. Those with the same caption are told apart by the address of their points.
QString ChangeTracking::deferredPoints() const
{
    struct Deferral {
        QString camera;
        QString address;
        QString text;
    };
    QList<Deferral> all;
    QStringList cameras;
    for (const auto *calibrator : m_window.findChildren<PtzCalibrator *>()) {
        const Control *control = m_controls.of(calibrator);
        if (!control || calibrator->deferral().isEmpty())
            continue;
        const QDomElement key = control->element.firstChildElement(QStringLiteral("key"));
        all.append({ChangePlaces::caption(*control), key.text().trimmed(), calibrator->deferral()});
        cameras.append(all.constLast().camera);
    }
    QStringList lines;
    for (const auto &[camera, address, text] : all) {
        const bool isUnique = !camera.isEmpty() && cameras.count(camera) == 1;
        const QString name = isUnique ? camera : QStringLiteral("%1 (%2)").arg(camera, address);
        lines.append(name.trimmed() + QStringLiteral(": ") + text);
    }
    return lines.join(u'\n');
}

bool ChangeTracking::askAboutDeferredPoints() const
{
    const OrbDlgQuestion::Captions captions{{QMessageBox::Ignore, tr("Send all the same")},
                                            {QMessageBox::Cancel, tr("Go on editing")}};
    return OrbDlgQuestion::DoExplained(&m_window, QMessageBox::Warning, m_window.windowTitle(),
                                       tr("Points of a camera that are not set yet would be missing."),
                                       deferredPoints(), QMessageBox::Ignore | QMessageBox::Cancel,
                                       QMessageBox::Cancel, nullptr, captions) == QMessageBox::Ignore;
}

ChangeTracking::Answer ChangeTracking::askBeforeClosing() const
{
    const bool isFile = isOfAFile();
    QStringList details{m_count->text(), deferredPoints()};
    details.removeAll(QString());
    const OrbDlgQuestion::Captions captions{{QMessageBox::Save, isFile ? tr("Save") : tr("Send")},
                                            {QMessageBox::Discard, tr("Discard")},
                                            {QMessageBox::Cancel, tr("Go on editing")}};
    const auto answer = OrbDlgQuestion::DoExplained(
        &m_window, QMessageBox::Question, m_window.windowTitle(),
        isFile ? tr("There are changes that were not saved.")
               : tr("There are changes that were not sent to the recorder."),
        details.join(u'\n'), QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
        QMessageBox::Cancel, nullptr, captions);
    if (answer == QMessageBox::Save)
        return Answer::Send;
    return answer == QMessageBox::Discard ? Answer::Discard : Answer::GoOnEditing;
}

void ChangeTracking::takeBack(const QStringList &paths)
{
    QList<ValueDifference> changes;
    for (const Change &change : m_list.all())
        changes.append({change.path, change.oldValue, change.newValue});
    const MovedLists moved(PositionLists(descriptionText()), changes,
                           [this](const QString &path) { return m_list.oldValue(path).has_value(); });
    const QSet<QString> takenBack = moved.completed(paths, pathsOf(changes));
    QList<ValueEdit> edits;
    for (const ValueDifference &change : std::as_const(changes)) {
        if (takenBack.contains(change.path))
            edits.append({change.path, change.after, change.before});
    }
    apply(edits);
}

void ChangeTracking::apply(const QList<ValueEdit> &edits)
{
    const EditSteps::Gesture gesture(&m_steps);
    for (const ValueEdit &edit : edits)
        m_steps.note(edit.path);
    m_bindings.putBack(edits);
}

QDialog *ChangeTracking::frontDialog() const
{
    QWidget *front = QApplication::activeModalWidget();
    for (const QWidget *above = front ? front->parentWidget() : nullptr; above;
         above = above->parentWidget()) {
        if (above == &m_window)
            return qobject_cast<QDialog *>(front);
    }
    return nullptr;
}

void ChangeTracking::leaveDialogs(const QWidget &window, const std::function<void()> &work)
{
    QDialog *outermost = nullptr;
    for (QDialog *front = frontDialog(); front && front != &window; front = frontDialog()) {
        outermost = front;
        front->reject();
        if (front->isVisible())
            return;
    }
    // A dialog goes behind its event loop, in which this runs.
    if (outermost)
        connect(outermost, &QObject::destroyed, this, work);
    else
        work();
}

void ChangeTracking::show(int number)
{
    const Control *control = m_controls.find(number);
    if (control && control->widget)
        ChangePlaces::show(*control);
}

void ChangeTracking::goTo(const QString &path)
{
    QList<const Control *> editors = m_places.editors(path);
    const QDialog *front = frontDialog();
    std::stable_partition(editors.begin(), editors.end(), [front](const Control *control) {
        return front && control->widget->window() == front;
    });
    if (!editors.isEmpty())
        return goToControl(editors.constFirst()->number);
    if (const DescribedItem *item = described().editorInDialog(path))
        showInDialog(item->element, described().dialogs()[item->dialog].tag,
                     DialogRoutes(m_window, m_controls, described()).to(item->dialog));
}

/// Undo in a dialog leaves the user there.
void ChangeTracking::showMoved(const QString &path)
{
    const QDialog *front = frontDialog();
    if (!front)
        return goTo(path);
    for (const Control *control : m_places.editors(path)) {
        if (control->widget->window() == front)
            return ChangePlaces::show(*control);
    }
}

void ChangeTracking::showInDialog(const QDomElement &element, const QString &tag,
                                  const DialogRoutes::Route &route)
{
    if (!route.canOpen)
        return goToControl(route.begin);
    leaveDialogs(*m_window.window(), [this, element, tag] {
        // The request returns when the dialog is closed.
        const auto showElement = [this, element] {
            const Control *control = m_controls.of(element);
            if (control && control->widget)
                ChangePlaces::show(*control);
        };
        QMetaObject::invokeMethod(this, showElement, Qt::QueuedConnection);
        Q_EMIT dialogRequested(tag);
    });
}

void ChangeTracking::goToControl(int number)
{
    const Control *control = m_controls.find(number);
    if (control && control->widget)
        leaveDialogs(*control->widget->window(), [this, number] { show(number); });
}

void ChangeTracking::startDialog(QDialog &dialog)
{
    addKeys(dialog);
    for (const Change &change : m_list.all())
        noteChange(change.path);
}

void ChangeTracking::addKeys(QWidget &dialog)
{
    const auto add = [this, &dialog](const QKeySequence &keys, void (ChangeTracking::*receiver)()) {
        connect(new QShortcut(keys, &dialog), &QShortcut::activated, this, receiver);
    };
    add(Qt::CTRL | Qt::Key_R, &ChangeTracking::reviewRequested);
    add(QKeySequence::Undo, &ChangeTracking::undo);
    add(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, &ChangeTracking::redo);
    add(Qt::CTRL | Qt::Key_Y, &ChangeTracking::redo);
    for (const bool isBackwards : {false, true}) {
        const QKeyCombination keys(isBackwards ? Qt::ShiftModifier : Qt::NoModifier, Qt::Key_F8);
        connect(new QShortcut(keys, &dialog), &QShortcut::activated, this,
                [this, &dialog, isBackwards] { goToNextProblem(dialog, isBackwards); });
    }
    connect(new QShortcut(QKeySequence::Find, &dialog), &QShortcut::activated, this, [this, &dialog] {
        m_searched = &dialog == &m_window ? nullptr : &dialog;
        Q_EMIT findRequested();
    });
}

void ChangeTracking::goToNextProblem(const QWidget &window, bool isBackwards)
{
    int focused = -1;
    for (const QWidget *widget = window.focusWidget(); widget && focused < 0;
         widget = widget->parentWidget()) {
        if (const Control *control = m_controls.of(widget))
            focused = control->number;
    }
    goToControl(m_problems.next(window, focused, isBackwards));
}

FindDialog::Way ChangeTracking::wayTo(const DescribedDialog &dialog, const DialogRoutes::Route &route) const
{
    if (route.canOpen)
        return {tr("Enter opens the dialog \"%1\".").arg(dialog.title)};
    const Control *begin = m_controls.find(route.begin);
    if (!begin || !begin->widget)
        return {tr("This is in the dialog \"%1\", which opens by itself.").arg(dialog.title), false};
    return {tr("This is in the dialog \"%1\". Enter shows where the way there begins: %2")
                .arg(dialog.title, ChangePlaces::caption(*begin))};
}

void ChangeTracking::find(const std::function<void(QDialog &)> &run)
{
    const DescribedItems described(m_context, m_adapterOf);
    const DialogRoutes routes(m_window, m_controls, described);
    QWidget *const searched = std::exchange(m_searched, nullptr);
    const FindIndex index(m_context, described, m_list, m_problems, searched);
    const auto way = [&](const FindIndex::Entry &entry) {
        return entry.control >= 0 ? FindDialog::Way()
                                  : wayTo(described.dialogs()[entry.dialog], routes.to(entry.dialog));
    };
    FindDialog dialog(index, way, searched ? searched : &m_window);
    run(dialog);
    const FindIndex::Entry *chosen = dialog.chosen();
    if (chosen && chosen->control >= 0)
        goToControl(chosen->control);
    else if (chosen)
        showInDialog(chosen->element, described.dialogs()[chosen->dialog].tag, routes.to(chosen->dialog));
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
