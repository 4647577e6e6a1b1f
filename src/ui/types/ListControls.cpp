#include "ui/types/ListControls.h"

#include "controls/AccessList.h"
#include "controls/SoftList.h"
#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <algorithm>
#include <utility>

namespace paravue
{
namespace
{

/// What both lists have in common: the address before every key, where the rows are counted, and the key that
/// tells whether the numbers of the rows begin at 0.
struct Numbering {
    QString prefix;
    QString count;
    QString name;

    static Numbering ofUsers(const Control &control)
    {
        return {firstAddress(control.element), QStringLiteral("/CNT"), QStringLiteral("/NAME")};
    }
    static Numbering ofPackages(const Control &control)
    {
        return {firstAddress(control.element), QStringLiteral("/PACKAGES/0"),
                QStringLiteral("/PACKAGE_NAME_")};
    }

    int first(OrbSetup &store) const { return store.value(prefix + name + u'0').isEmpty() ? 1 : 0; }
};

/// The columns of the description, or else those that a list of this kind has.
void addColumns(RowListView &list, ControlContext &context, const Control &control,
                const QStringList &fallback)
{
    QStringList headers;
    QList<int> widths;
    for (QDomElement column = control.element.firstChildElement(QStringLiteral("column"));
         !column.isNull() && headers.size() < limits::ListColumns;
         column = column.nextSiblingElement(QStringLiteral("column"))) {
        headers.append(context.text(control, column.text()));
        widths.append(std::min(intAttribute(column, QStringLiteral("width")), limits::Pixels));
    }
    list.setColumns(headers.isEmpty() ? fallback : headers, widths);
}

bool loadHeaders(RowListView &list, ControlContext &context, const Control &control)
{
    QStringList headers;
    for (const QString &text :
         childTexts(control.element, QStringLiteral("column")).mid(0, limits::ListColumns))
        headers.append(context.text(control, text));
    return list.setHeaders(headers);
}

/// Reads the rows of a list, each of them by \a read with \a fields values at most. The list knows afterwards
/// whether these are all.
template <class Entry, class Read>
QList<Entry> storedRows(RowListView &list, ControlContext &context, const Control &control,
                        const Numbering &numbering, int fields, Read read)
{
    list.setComplete(!numbering.prefix.isEmpty());
    if (numbering.prefix.isEmpty())
        return {};
    const auto value = [&](const QString &key) { return context.value(control, numbering.prefix + key); };
    const int stored = value(numbering.count).toInt();
    const int count = shownRows(context, stored);
    list.setComplete(stored <= count);
    const int first = value(numbering.name + u'0').isEmpty() ? 1 : 0;
    QList<Entry> rows;
    rows.reserve(count);
    for (int row = 0; row < count; ++row) {
        if (!context.take(ControlContext::ListCells, std::max(fields, list.columnCount()))) {
            list.setComplete(false);
            break;
        }
        rows.append(read(value, QString::number(first + row)));
    }
    return rows;
}

QMap<int, QString> levelCaptions(ControlContext &context, const Control &control)
{
    QMap<int, QString> captions;
    int place = 0;
    for (QDomElement level = control.element.firstChildElement(QStringLiteral("accesslevel"));
         !level.isNull(); level = level.nextSiblingElement(QStringLiteral("accesslevel")), ++place) {
        const bool isNumbered = level.hasAttribute(QStringLiteral("level"));
        captions.insert(isNumbered ? intAttribute(level, QStringLiteral("level")) : place,
                        context.text(control, level.text()));
    }
    return captions;
}

const QString selectedState = QStringLiteral("selected");
const QString unselectedState = QStringLiteral("unselected");
const QString activatedState = QStringLiteral("activated");
const QString deleteState = QStringLiteral("delete");
const QStringList allStates{selectedState, unselectedState, activatedState, deleteState};

QString stateOf(const Control &control)
{
    const auto *list = qobject_cast<const RowListView *>(control.widget);
    switch (list->lastChange()) {
    case RowListView::Activated:
        return activatedState;
    case RowListView::DeletePressed:
        return deleteState;
    default:
        return list->selectedRow() < 0 ? unselectedState : selectedState;
    }
}

} // namespace

int shownRows(ControlContext &context, int stored)
{
    if (stored > limits::ListRows)
        context.reportOnce(WindowText::tr("A list has %1 rows; only the first %2 are shown")
                               .arg(QString::number(stored), QString::number(limits::ListRows)));
    return std::clamp(stored, 0, limits::ListRows);
}

QWidget *AccessListControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *list = new AccessList(parent);
    addColumns(*list, context, control, {WindowText::tr("User"), WindowText::tr("Level")});
    return list;
}

const QMetaObject &AccessListControl::widgetClass() const
{
    return AccessList::staticMetaObject;
}

ChangeSignal AccessListControl::changeSignal() const
{
    return {SIGNAL(valueChanged()), SLOT(onCtrlChanged())};
}

bool AccessListControl::load(ControlContext &context, const Control &control) const
{
    auto *list = qobject_cast<AccessList *>(control.widget);
    const bool newHeaders = loadHeaders(*list, context, control);
    list->setLevelCaptions(levelCaptions(context, control));
    const QList<AccessUser> users = storedRows<AccessUser>(
        *list, context, control, Numbering::ofUsers(control), 3, [](const auto &value, const QString &i) {
            return AccessUser{value("/NAME" + i), value("/PASSWD" + i), value("/LEVEL" + i)};
        });
    return list->setUsers(users) || newHeaders;
}

QStringList AccessListControl::assignments(ControlContext &context, const Control &control) const
{
    const auto *list = qobject_cast<const AccessList *>(control.widget);
    const Numbering numbering = Numbering::ofUsers(control);
    if (list->lastChange() != RowListView::Edited || !list->isComplete())
        return {};
    OrbSetup &store = context.store();
    const QString &prefix = numbering.prefix;
    const int oldCount = store.value(prefix + numbering.count).toInt();
    int number = numbering.first(store);
    const int oldEnd = number + oldCount;
    QStringList result{prefix + "/CNT/" + QString::number(list->users().size())};
    for (const AccessUser &user : list->users()) {
        const QString i = QString::number(number++);
        result << prefix + "/NAME" + i + u'/' + user.name << prefix + "/PASSWD" + i + u'/' + user.password
               << prefix + "/LEVEL" + i + u'/' + user.level;
    }
    for (; number < oldEnd; ++number) {
        for (const char *key : {"/NAME", "/PASSWD", "/LEVEL"}) {
            const QString address = prefix + key + QString::number(number);
            if (!store.value(address).isEmpty())
                result << address + u'/';
        }
    }
    return result;
}

QString AccessListControl::actionState(const Control &control) const
{
    return stateOf(control);
}

QStringList AccessListControl::actionStates() const
{
    return allStates;
}

QWidget *SoftListControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *list = new SoftList(parent);
    addColumns(*list, context, control,
               {WindowText::tr("Package"), WindowText::tr("Version"), WindowText::tr("Description"),
                WindowText::tr("Priority")});
    return list;
}

const QMetaObject &SoftListControl::widgetClass() const
{
    return SoftList::staticMetaObject;
}

ChangeSignal SoftListControl::changeSignal() const
{
    return {SIGNAL(valueChanged()), SLOT(onCtrlChanged())};
}

bool SoftListControl::load(ControlContext &context, const Control &control) const
{
    auto *list = qobject_cast<SoftList *>(control.widget);
    const bool newHeaders = loadHeaders(*list, context, control);
    const QList<SoftPackage> packages = storedRows<SoftPackage>(
        *list, context, control, Numbering::ofPackages(control), 4, [](const auto &value, const QString &i) {
            return SoftPackage{value("/PACKAGE_NAME_" + i), value("/PACKAGE_VER_" + i),
                               value("/PACKAGE_DESC_" + i), value("/PACKAGE_PRIORITY_" + i)};
        });
    return list->setPackages(packages) || newHeaders;
}

QString SoftListControl::actionState(const Control &control) const
{
    return stateOf(control);
}

QStringList SoftListControl::actionStates() const
{
    return allStates;
}

} // namespace paravue
