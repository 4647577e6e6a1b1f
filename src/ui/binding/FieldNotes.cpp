#include "ui/binding/FieldNotes.h"

#include "ui/base/SafeText.h"
#include "ui/base/WindowStyle.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>

namespace paravue
{
namespace
{

const QString unitTag = QStringLiteral("unit");
const QString helpTag = QStringLiteral("help");

QString childText(const Control &control, const QString &tag)
{
    return control.element.firstChildElement(tag).text();
}

std::optional<int> numberAttribute(const Control &control, const QString &name)
{
    bool isNumber = false;
    const int number = control.element.attribute(name).toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
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
        !childText(control, helpTag).isEmpty() || (!showsUnit && !childText(control, unitTag).isEmpty());
    for (const char *name : {"minimum", "maximum", "required"})
        hasWords |= isEdit && control.element.hasAttribute(QLatin1String(name));
    if (hasWords)
        new FieldNotes(control, showsUnit);
}

FieldNotes *FieldNotes::of(const QWidget *field)
{
    return field->findChild<FieldNotes *>(QString(), Qt::FindDirectChildrenOnly);
}

FieldNotes::FieldNotes(const Control &control, bool showsUnit)
    : QObject(control.widget), m_field(control.widget)
{
    if (!showsUnit && !childText(control, unitTag).isEmpty())
        m_unit = makeLabel(*m_field);
    if (auto *edit = qobject_cast<QLineEdit *>(m_field)) {
        m_least = numberAttribute(control, QStringLiteral("minimum"));
        m_most = numberAttribute(control, QStringLiteral("maximum"));
        m_isRequired = control.element.attribute(QStringLiteral("required")) == QLatin1String("yes");
        connect(edit, &QLineEdit::textChanged, this, &FieldNotes::check);
    }
    if (!childText(control, helpTag).isEmpty() || m_least || m_most || m_isRequired) {
        m_note = makeLabel(*m_field);
        m_note->setWordWrap(true);
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
        label->setEnabled(m_field->isEnabled());
    }
}

QString FieldNotes::range() const
{
    if (m_least && m_most)
        return WindowText::tr("From %1 to %2").arg(*m_least).arg(*m_most);
    if (m_least)
        return WindowText::tr("At least %1").arg(*m_least);
    return m_most ? WindowText::tr("At most %1").arg(*m_most) : QString();
}

/// What is wrong with the value; empty when nothing is.
QString FieldNotes::problem() const
{
    const auto *edit = qobject_cast<QLineEdit *>(m_field);
    if (!edit)
        return {};
    const QString value = edit->text().trimmed();
    if (value.isEmpty())
        return m_isRequired ? WindowText::tr("A value is needed here") : QString();
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    const bool isWithin = isNumber && (!m_least || number >= *m_least) && (!m_most || number <= *m_most);
    if ((!m_least && !m_most) || isWithin)
        return {};
    return isNumber ? WindowText::tr("Outside of the range: %1").arg(range())
                    : WindowText::tr("Not a number: %1").arg(range());
}

void FieldNotes::check()
{
    if (!m_note)
        return;
    if (const QString found = problem(); !found.isEmpty())
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
    m_field->setAccessibleDescription(text);
    m_field->updateGeometry();
}

void FieldNotes::paintNote()
{
    if (!m_note)
        return;
    QPalette palette;
    if (m_isProblem) {
        const QColor ground = m_field->palette().color(QPalette::Window);
        palette.setColor(QPalette::WindowText, readableVersion(QColor(0xC0, 0x20, 0x20), ground));
    }
    m_note->setPalette(palette);
}

void loadFieldNotes(ControlContext &context, const Control &control)
{
    FieldNotes *notes = FieldNotes::of(control.widget);
    if (!notes)
        return;
    if (notes->m_unit) {
        const QString unit = context.text(control, childText(control, unitTag));
        if (notes->m_unit->text() != unit) {
            notes->m_unit->setText(unit);
            notes->m_field->updateGeometry();
        }
    }
    notes->m_help = context.text(control, childText(control, helpTag));
    notes->check();
}

} // namespace paravue
