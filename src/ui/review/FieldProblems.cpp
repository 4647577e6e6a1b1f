#include "ui/review/FieldProblems.h"

#include "controls/ControlStyle.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/FieldNotes.h"
#include "ui/review/ChangePlaces.h"

#include <QEvent>
#include <QLineEdit>
#include <QValidator>

#include <algorithm>

namespace paravue
{

namespace
{

/// Why the validator or the mask of \a field refuses its text; empty when they do not. Whether a field may be
/// empty is up to the description.
QString refusal(const QLineEdit &field)
{
    if (field.hasAcceptableInput() || FieldNotes::isEmpty(field))
        return {};
    QString text = field.text();
    int cursor = field.cursorPosition();
    const bool isWrong =
        field.validator() && field.validator()->validate(text, cursor) == QValidator::Invalid;
    return isWrong ? FieldProblems::tr("Not allowed here") : FieldProblems::tr("Not complete");
}

} // namespace

void FieldProblems::check(const Control &control)
{
    auto *field = qobject_cast<QLineEdit *>(control.widget.data());
    if (!field)
        return;
    const FieldNotes *notes = FieldNotes::of(field);
    QString text = notes ? notes->problem() : QString();
    const bool isRefusal = text.isEmpty();
    if (isRefusal)
        text = refusal(*field);
    if (text.isEmpty())
        return forget(control.number);
    const auto [entry, isNew] = m_wrong.try_emplace(control.number);
    Wrong &wrong = entry->second;
    if (isNew)
        watch(*field, control.number);
    wrong.field = field;
    wrong.text = text;
    wrong.isRefusal = isRefusal;
    judge(control.number, wrong);
}

/// Whether the field is hidden depends on all that it stands in.
void FieldProblems::watch(QLineEdit &field, int number)
{
    connect(&field, &QObject::destroyed, this, [this, number] {
        m_wrong[number].field = nullptr; // is only a QObject by now
        forget(number);
    });
    for (QWidget *widget = &field; widget && !widget->isWindow(); widget = widget->parentWidget()) {
        if (!isPage(*widget))
            widget->installEventFilter(this);
    }
}

void FieldProblems::judge(int number, Wrong &wrong)
{
    setProblem(wrong, canBeUsed(*wrong.field));
    if (const Control *control = m_controls.find(number); control && wrong.isRefusal)
        FieldNotes::have(*control).setRefusal(wrong.isProblem ? wrong.text : QString());
    else if (FieldNotes *notes = FieldNotes::of(wrong.field))
        notes->setRefusal({});
}

void FieldProblems::setProblem(Wrong &wrong, bool isProblem)
{
    if (wrong.isProblem == isProblem)
        return;
    wrong.isProblem = isProblem;
    m_count += isProblem ? 1 : -1;
    if (wrong.field)
        showProblem(*wrong.field, isProblem);
    Q_EMIT changed(wrong.field, isProblem);
}

void FieldProblems::forget(int number)
{
    const auto found = m_wrong.find(number);
    if (found == m_wrong.end())
        return;
    Wrong wrong = found->second;
    m_wrong.erase(found);
    if (wrong.field) {
        disconnect(wrong.field, &QObject::destroyed, this, nullptr);
        if (FieldNotes *notes = FieldNotes::of(wrong.field))
            notes->setRefusal({});
    }
    setProblem(wrong, false);
}

void FieldProblems::forgetRemoved()
{
    QList<int> removed;
    for (const auto &[number, wrong] : m_wrong) {
        if (!m_controls.find(number))
            removed << number;
    }
    for (const int number : std::as_const(removed))
        forget(number);
}

QString FieldProblems::problemOf(int control) const
{
    const auto found = m_wrong.find(control);
    return found != m_wrong.end() && found->second.isProblem ? found->second.text : QString();
}

QList<int> FieldProblems::controls() const
{
    QList<int> numbers;
    for (const auto &[number, wrong] : m_wrong) {
        if (wrong.isProblem)
            numbers << number;
    }
    return numbers;
}

int FieldProblems::next(const QWidget &window, int control, bool isBackwards) const
{
    QList<int> numbers = controls();
    numbers.removeIf([&](int number) { return !window.isAncestorOf(m_wrong.at(number).field); });
    if (numbers.isEmpty())
        return -1;
    if (isBackwards) {
        const auto before = std::lower_bound(numbers.begin(), numbers.end(), control);
        return before == numbers.begin() ? numbers.constLast() : *(before - 1);
    }
    const auto behind = std::upper_bound(numbers.begin(), numbers.end(), control);
    return behind == numbers.end() ? numbers.constFirst() : *behind;
}

bool FieldProblems::eventFilter(QObject *watched, QEvent *event)
{
    const bool isVisibility = event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent;
    if (isVisibility || event->type() == QEvent::EnabledChange) {
        const auto *widget = static_cast<const QWidget *>(watched);
        const Control *control = m_controls.of(widget);
        const auto found = control ? m_wrong.find(control->number) : m_wrong.end();
        if (found != m_wrong.end())
            judge(found->first, found->second);
        else if (isVisibility)
            judgeWithin(*widget);
    }
    return QObject::eventFilter(watched, event);
}

void FieldProblems::judgeWithin(const QWidget &widget)
{
    for (auto &[number, wrong] : m_wrong) {
        if (wrong.field && widget.isAncestorOf(wrong.field))
            judge(number, wrong);
    }
}

} // namespace paravue
