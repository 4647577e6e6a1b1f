#include "ui/types/ChoiceControls.h"

#include "store/OrbSetup.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QScrollBar>
#include <QSignalBlocker>

namespace paravue
{
namespace
{

/// A choice of a drop-down list: its caption, and the address with its value that choosing it writes.
struct Choice {
    QString caption;
    QString assignment;
};

/// The n-th text goes with the key inside it or, without one, with the n-th key beside the texts.
QList<Choice> choices(const QDomElement &element)
{
    const QStringList keys = childAddresses(element);
    QList<Choice> result;
    for (QDomElement text = element.firstChildElement(QStringLiteral("text")); !text.isNull();
         text = text.nextSiblingElement(QStringLiteral("text"))) {
        const QDomElement inner = text.firstChildElement(QStringLiteral("key"));
        const QString key = inner.isNull() ? keys.value(result.size()) : addressText(inner);
        result.append({ownText(text), key});
    }
    return result;
}

QStringList keySet(const QDomElement &element, int index)
{
    QDomElement set = element.firstChildElement(QStringLiteral("keyset"));
    for (; index > 0 && !set.isNull(); --index)
        set = set.nextSiblingElement(QStringLiteral("keyset"));
    QStringList result;
    if (!set.isNull()) {
        for (const QString &assignment : set.text().split(u','))
            result.append(assignment.trimmed());
    }
    result.removeAll(QString());
    return result;
}

bool showCaption(QComboBox &box, int index, const QString &caption)
{
    if (box.itemText(index) == caption)
        return false;
    box.setItemText(index, caption);
    return true;
}

// Both read and write a 24-hour clock, as neither has a marker for the half of the day.
const QString storedFormat = QStringLiteral("yyyyMMddHHmmss");
const QString writtenFormat = QStringLiteral("yyyyMMddhhmmss");

} // namespace

QWidget *DropDownControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *box = new QComboBox(parent);
    for (const Choice &choice : choices(control.element))
        box->addItem(context.text(control, choice.caption), choice.assignment);
    return box;
}

const QMetaObject &DropDownControl::widgetClass() const
{
    return QComboBox::staticMetaObject;
}

ChangeSignal DropDownControl::changeSignal() const
{
    return {SIGNAL(activated(int)), SLOT(onCtrlChanged(int))};
}

bool DropDownControl::load(ControlContext &context, const Control &control) const
{
    auto *box = qobject_cast<QComboBox *>(control.widget);
    const QSignalBlocker silent(box);
    // The texts are those of a moment ago when the first values come.
    const QList<Choice> entries = control.loaded ? choices(control.element) : QList<Choice>();
    int current = box->currentIndex();
    bool changed = false;
    for (int i = 0; i < box->count(); ++i) {
        changed |= control.loaded && showCaption(*box, i, context.text(control, entries.value(i).caption));
        const QString assignment = box->itemData(i).toString();
        if (assignment.isEmpty())
            continue;
        // Deliberate: of several entries that fit, the last one is shown.
        if (context.value(control, OrbSetup::path(assignment)) == OrbSetup::defValue(assignment))
            current = i;
    }
    if (current == box->currentIndex())
        return changed;
    box->setCurrentIndex(current);
    return true;
}

QStringList DropDownControl::assignments(ControlContext &, const Control &control) const
{
    const auto *box = qobject_cast<QComboBox *>(control.widget);
    QStringList result;
    if (const QString assignment = box->currentData().toString(); !assignment.isEmpty())
        result.append(assignment);
    // A choice of the user is made in an active window; a choice made by other means sets its own value only.
    if (box->isActiveWindow())
        result.append(keySet(control.element, box->currentIndex()));
    return result;
}

QWidget *ScrollControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    const QDomElement &element = control.element;
    auto *bar = new QScrollBar(fills(element) == Qt::Horizontal ? Qt::Horizontal : Qt::Vertical, parent);
    bar->setRange(intAttribute(element, QStringLiteral("minvalue")),
                  intAttribute(element, QStringLiteral("maxvalue")));
    bar->setSingleStep(1);
    bar->setPageStep(qMax(1, int((qint64(bar->maximum()) - bar->minimum()) / 10)));
    bar->setValue(intAttribute(element, QStringLiteral("value")));
    bar->setFocusPolicy(Qt::StrongFocus);
    // The toolkit means the direction in which a page moves: its right arrow would make a value smaller.
    bar->setInvertedControls(bar->orientation() == Qt::Vertical);
    return bar;
}

const QMetaObject &ScrollControl::widgetClass() const
{
    return QScrollBar::staticMetaObject;
}

ChangeSignal ScrollControl::changeSignal() const
{
    return {SIGNAL(valueChanged(int)), SLOT(onCtrlChanged(int))};
}

Qt::Orientations ScrollControl::fills(const QDomElement &item) const
{
    return item.attribute(QStringLiteral("orientation")) == QLatin1String("horizontal") ? Qt::Horizontal
                                                                                        : Qt::Vertical;
}

bool ScrollControl::load(ControlContext &context, const Control &control) const
{
    auto *bar = qobject_cast<QScrollBar *>(control.widget);
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    if (key.isNull())
        return false;
    const int before = bar->value();
    const QSignalBlocker silent(bar);
    bar->setValue(context.value(control, addressText(key)).toInt());
    return bar->value() != before;
}

QStringList ScrollControl::assignments(ControlContext &, const Control &control) const
{
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    if (key.isNull())
        return {};
    const int position = qobject_cast<QScrollBar *>(control.widget)->value();
    return {OrbSetup::path(addressText(key)) + u'/' + QString::number(position)};
}

QWidget *DateTimeControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *edit = new QDateTimeEdit(parent);
    // The recorder's clock is not this computer's: an hour that the local time zone skips exists there.
    edit->setTimeSpec(Qt::UTC);
    edit->setCalendarPopup(control.element.attribute(QStringLiteral("calendarPopup")) == QLatin1String("on"));
    if (const QString format = control.element.attribute(QStringLiteral("format")); !format.isEmpty())
        edit->setDisplayFormat(format);
    return edit;
}

const QMetaObject &DateTimeControl::widgetClass() const
{
    return QDateTimeEdit::staticMetaObject;
}

ChangeSignal DateTimeControl::changeSignal() const
{
    return {SIGNAL(dateTimeChanged(QDateTime)), SLOT(onCtrlChanged(QDateTime))};
}

bool DateTimeControl::load(ControlContext &context, const Control &control) const
{
    auto *edit = qobject_cast<QDateTimeEdit *>(control.widget);
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    if (key.isNull())
        return false;
    const QDateTime stored = QDateTime::fromString(context.value(control, addressText(key)), storedFormat);
    const QDateTime time(stored.date(), stored.time(), Qt::UTC);
    if (!time.isValid() || time == edit->dateTime())
        return false;
    const QSignalBlocker silent(edit);
    edit->setDateTime(time);
    return true;
}

QStringList DateTimeControl::assignments(ControlContext &, const Control &control) const
{
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    if (key.isNull())
        return {};
    const QDateTime time = qobject_cast<QDateTimeEdit *>(control.widget)->dateTime();
    return {OrbSetup::path(addressText(key)) + u'/' + time.toString(writtenFormat)};
}

} // namespace paravue
