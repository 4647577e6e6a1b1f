#include "ui/binding/FieldNotes.h"

#include "changes/DescribedSecrets.h"
#include "changes/SecretKeys.h"
#include "controls/ControlStyle.h"
#include "controls/ReadablePalette.h"
#include "store/OrbSetup.h"
#include "ui/accessibility/ControlName.h"
#include "ui/base/SafeText.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/RefusalMark.h"
#include "ui/description/InterfaceDocument.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>

namespace paravue
{
namespace
{

const QString unitTag = QStringLiteral("unit");
const QString helpTag = QStringLiteral("help");
constexpr int MarkLength = 16;   // of a stored value beside its field, in characters
constexpr int MostOfValue = 200; // the same, as its tool tip

QString noteText(const Control &control, const QString &tag)
{
    return control.element.firstChildElement(tag).text();
}

std::optional<int> numberAttribute(const Control &control, const QString &name)
{
    bool isNumber = false;
    const int number = control.element.attribute(name).toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

/// Hidden as it is typed, by the word of the description, or by the name of its key.
bool isSecret(const Control &control)
{
    const auto *edit = qobject_cast<const QLineEdit *>(control.widget.data());
    return (edit && edit->echoMode() != QLineEdit::Normal) ||
           isMarkedSecret(control.element.attribute(QStringLiteral("password")),
                          control.element.attribute(QStringLiteral("secret"))) ||
           SecretKeys().contains(OrbSetup::path(firstAddress(control.element)));
}

QLabel *makeLabel(QWidget &field)
{
    auto *label = new QLabel(field.parentWidget());
    label->setTextFormat(Qt::PlainText);
    label->setVisible(!field.isHidden());
    return label;
}

} // namespace

void FieldNotes::attach(const Control &control, bool showsUnit)
{
    const bool isEdit = qobject_cast<QLineEdit *>(control.widget);
    bool hasWords =
        !noteText(control, helpTag).isEmpty() || (!showsUnit && !noteText(control, unitTag).isEmpty());
    for (const char *name : {"minimum", "maximum", "required"})
        hasWords |= isEdit && control.element.hasAttribute(QLatin1String(name));
    if (hasWords)
        new FieldNotes(control, showsUnit);
}

FieldNotes *FieldNotes::of(const QWidget *field)
{
    return field->findChild<FieldNotes *>(QString(), Qt::FindDirectChildrenOnly);
}

FieldNotes &FieldNotes::have(const Control &control)
{
    FieldNotes *notes = of(control.widget);
    return notes ? *notes : *new FieldNotes(control, true);
}

bool FieldNotes::isEmpty(const QLineEdit &field)
{
    if (field.inputMask().isEmpty())
        return field.text().trimmed().isEmpty();
    QLineEdit untouched;
    untouched.setInputMask(field.inputMask());
    return field.text() == untouched.text();
}

FieldNotes::FieldNotes(const Control &control, bool showsUnit)
    : QObject(control.widget), m_field(control.widget), m_isSecret(isSecret(control))
{
    if (!showsUnit && !noteText(control, unitTag).isEmpty())
        m_unit = makeLabel(*m_field);
    if (auto *edit = qobject_cast<QLineEdit *>(m_field)) {
        m_least = numberAttribute(control, QStringLiteral("minimum"));
        m_most = numberAttribute(control, QStringLiteral("maximum"));
        m_isRequired = control.element.attribute(QStringLiteral("required")) == QLatin1String("yes");
        connect(edit, &QLineEdit::textChanged, this, &FieldNotes::check);
    }
    if (!noteText(control, helpTag).isEmpty() || m_least || m_most || m_isRequired) {
        m_note = makeLabel(*m_field);
        m_note->setWordWrap(true);
        m_note->setAlignment(Qt::AlignTop);
        QFont font = m_note->font();
        font.setPointSizeF(font.pointSizeF() * 0.9);
        m_note->setFont(font);
    }
    m_field->installEventFilter(this);
    follow();
}

bool FieldNotes::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::EnabledChange:
        follow();
        break;
    case QEvent::PaletteChange:
        follow(); // it may have become a value to read
        paintNote();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FieldNotes::follow()
{
    for (QLabel *label : {m_unit, m_note}) {
        if (!label)
            continue;
        label->setVisible(!m_field->isHidden());
        label->setEnabled(m_field->isEnabled() || isShownAsValue(m_field));
    }
    if (m_storedMark)
        m_storedMark->setVisible(!m_field->isHidden() && !m_storedMark->text().isEmpty());
}

QString FieldNotes::range() const
{
    if (m_least && m_most)
        return WindowText::tr("From %1 to %2").arg(*m_least).arg(*m_most);
    if (m_least)
        return WindowText::tr("At least %1").arg(*m_least);
    return m_most ? WindowText::tr("At most %1").arg(*m_most) : QString();
}

QString FieldNotes::problem() const
{
    const auto *edit = qobject_cast<QLineEdit *>(m_field);
    const bool hasRange = m_least || m_most;
    if (!edit || (!hasRange && !m_isRequired))
        return {};
    if (isEmpty(*edit))
        return m_isRequired ? WindowText::tr("A value is needed here") : QString();
    const QString value = edit->text().trimmed();
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    const bool isWithin = isNumber && (!m_least || number >= *m_least) && (!m_most || number <= *m_most);
    if (!hasRange || isWithin)
        return {};
    return isNumber ? WindowText::tr("Outside of the range: %1").arg(range())
                    : WindowText::tr("Not a number: %1").arg(range());
}

void FieldNotes::check()
{
    if (!m_note)
        return;
    const QString wrong = problem();
    if (const QString &found = wrong.isEmpty() ? m_refusal : wrong; !found.isEmpty())
        setNote(found, true);
    else if (!m_help.isEmpty())
        setNote(m_help, false);
    else
        setNote(range().isEmpty() && m_isRequired ? WindowText::tr("Required") : range(), false);
}

void FieldNotes::setNote(const QString &text, bool isProblem)
{
    if (m_note->text() == text && m_isProblem == isProblem)
        return;
    m_isProblem = isProblem;
    m_note->setText(text);
    paintNote();
    describe();
    m_field->updateGeometry();
}

void FieldNotes::setRefusal(const QString &text)
{
    const bool isSaid = m_refusal == text;
    m_refusal = text;
    auto *edit = qobject_cast<QLineEdit *>(m_field);
    if (m_note || !edit)
        return check();
    if (!m_refusalMark) {
        if (text.isEmpty())
            return;
        m_refusalMark = new RefusalMark(*edit);
    }
    m_refusalMark->setReason(text);
    if (!isSaid)
        describe();
}

void FieldNotes::setUnfitValue(const std::optional<QString> &value)
{
    if (!value && !m_storedMark)
        return;
    if (!m_storedMark) {
        m_storedMark = makeLabel(*m_field);
        m_storedMark->setObjectName(QStringLiteral("storedMark"));
    }
    QString text;
    QString sentence;
    if (value && value->isEmpty()) {
        text = WindowText::tr("Nothing stored");
        sentence = WindowText::tr("No value is stored here, and none will be until you edit the field");
    } else if (value && m_isSecret) {
        text = WindowText::tr("Another value stored");
        sentence =
            WindowText::tr("The field cannot show the stored value, which stays until you edit the field");
    } else if (value) {
        const QString line = value->simplified();
        text =
            WindowText::tr("Stored: %1").arg(line.size() > MarkLength ? line.left(MarkLength) + u'…' : line);
        sentence = WindowText::tr("The field cannot show the stored value \"%1\", which stays until you edit "
                                  "the field")
                       .arg(value->left(MostOfValue));
    }
    if (m_storedMark->text() == text && m_storedSentence == sentence)
        return;
    m_storedMark->setText(text);
    m_storedSentence = sentence;
    m_storedMark->setToolTip(sentence.toHtmlEscaped());
    paintNote();
    follow();
    describe();
    m_field->updateGeometry();
}

void FieldNotes::setChanged(bool isChanged)
{
    m_isChanged = isChanged;
    describe();
}

/// For screen readers, which do not come to the labels.
void FieldNotes::describe()
{
    QStringList parts{m_storedSentence, m_note ? m_note->text() : m_refusal};
    parts.removeAll(QString());
    if (m_isChanged && parts.isEmpty())
        parts << plainToolTip(*m_field); // which a description takes the place of
    parts.removeAll(QString());
    if (m_isChanged)
        parts << WindowText::tr("Changed");
    m_field->setAccessibleDescription(parts.join(QStringLiteral(". ")));
}

void FieldNotes::paintNote()
{
    QPalette problem;
    problem.setColor(QPalette::WindowText, problemColor(m_field->palette()));
    if (m_note)
        m_note->setPalette(m_isProblem ? problem : QPalette());
    if (m_storedMark)
        m_storedMark->setPalette(problem);
}

void loadFieldNotes(ControlContext &context, const Control &control)
{
    FieldNotes *notes = FieldNotes::of(control.widget);
    if (control.adapter && control.adapter->traits().hasUnfitValues) {
        const std::optional<QString> unfit = control.adapter->unfitValue(context, control);
        if (unfit)
            notes = &FieldNotes::have(control);
        if (notes)
            notes->setUnfitValue(unfit);
    }
    if (!notes)
        return;
    if (notes->m_unit) {
        const QString unit = context.text(control, noteText(control, unitTag));
        if (notes->m_unit->text() != unit) {
            notes->m_unit->setText(unit);
            notes->m_field->updateGeometry();
        }
    }
    if (!notes->m_note)
        return; // most are there for the mark of a change only
    notes->m_help = context.text(control, noteText(control, helpTag));
    notes->check();
}

} // namespace paravue
