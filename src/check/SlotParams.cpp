#include "check/SlotParams.h"

#include "check/AddressCheck.h"
#include "check/CheckText.h"
#include "check/DescribedParts.h"
#include "check/ProblemList.h"
#include "check/TextCheck.h"
#include "device/protocol/DeviceCommands.h"
#include "store/OrbSetup.h"
#include "ui/binding/CallableSlot.h"
#include "ui/description/DialogTags.h"
#include "ui/description/InterfaceDocument.h"

#include <algorithm>

namespace paravue
{
namespace
{

/// True for a text that is known only when the window runs: it holds a translation or a value.
bool isVariable(const QString &text)
{
    return text.contains(u'@') || text.contains(u'{');
}

/// True for what stands in \a part, at any depth.
bool isWithin(const QDomNode &node, const QDomNode &part)
{
    for (QDomNode outer = node.parentNode(); !outer.isNull(); outer = outer.parentNode()) {
        if (outer == part)
            return true;
    }
    return false;
}

const QString languagePath = QStringLiteral("streams/common/language");

} // namespace

SlotParams::SlotParams(const InterfaceDocument &document, const DescribedParts &parts,
                       AddressCheck &addresses, const TextCheck &texts, ProblemList &problems)
    : m_document(document), m_parts(parts), m_addresses(addresses), m_texts(texts), m_problems(problems)
{
    open(dialogtags::Progress);
}

void SlotParams::check(const QDomElement &action, const QString &slot, const QString &param)
{
    using Check = void (SlotParams::*)(const QDomElement &, const QString &);
    static const QHash<QString, Check> checks{
        {"setValue", &SlotParams::setValue},     {"showDialog", &SlotParams::showDialog},
        {"fileDialog", &SlotParams::fileDialog}, {"settingsSlot", &SlotParams::settings},
        {"saveFileAs", &SlotParams::saveFileAs}, {"accessListSlot", &SlotParams::accessList},
        {"softListSlot", &SlotParams::softList},
    };
    if (const Check check = checks.value(slot))
        (this->*check)(action, param);
}

void SlotParams::checkFunction(const QDomElement &action, const QString &param)
{
    const QString name = param.section(u',', 0, 0);
    if (isVariable(name) || name == QLatin1String("save_settings"))
        return;
    const DeviceCommand *command = findDeviceCommand(name);
    if (!command)
        m_problems.error(action, CheckText::tr("There is no function \"%1\"").arg(name));
    else if (command->kind == DeviceCommand::Kind::InstallPackage)
        address(action, param.section(u',', 1));
}

void SlotParams::setValue(const QDomElement &action, const QString &param)
{
    if (isVariable(OrbSetup::path(param)))
        return;
    m_addresses.assignment(action, param);
    const QString language = OrbSetup::defValue(param);
    if (OrbSetup::path(param) == languagePath && !isVariable(language) && !m_texts.hasLanguage(language))
        m_problems.warning(action, CheckText::tr("There are no translations into \"%1\"").arg(language));
}

void SlotParams::showDialog(const QDomElement &action, const QString &tag)
{
    if (isVariable(tag)) {
        m_opensAny = true;
        return;
    }
    open(tag);
    if (m_document.first(tag).isNull())
        m_problems.error(action, CheckText::tr("Unknown dialog tag \"%1\"").arg(tag));
    else if (!isDialog(tag))
        m_problems.error(action, CheckText::tr("The first tag \"%1\" stands in no dialog").arg(tag));
    else if (isWithin(action, m_document.first(tag).parentNode()))
        m_problems.warning(action,
                           CheckText::tr("The dialog \"%1\" is open already when this runs").arg(tag));
}

void SlotParams::fileDialog(const QDomElement &action, const QString &param)
{
    const QStringList fields = slotFields(param);
    if (fields.size() < 4)
        return wrongParam(action, QStringLiteral("action,title,filter,address"));
    if (!isVariable(fields.first()) && fields.first() != QLatin1String("open") &&
        fields.first() != QLatin1String("save"))
        wrongField(action, fields.first(), QStringLiteral("open, save"));
    address(action, fields.last());
}

void SlotParams::settings(const QDomElement &action, const QString &param)
{
    const QStringList fields = slotFields(param);
    if (fields.size() != 3)
        return wrongParam(action, QStringLiteral("action,address,tag"));
    if (fields.first() == QLatin1String("write"))
        needDialogs(action, {dialogtags::ExportFailed});
    else if (fields.first() != QLatin1String("read") && !isVariable(fields.first()))
        wrongField(action, fields.first(), QStringLiteral("write, read"));
    address(action, fields.at(1));
    if (!isVariable(fields.at(2)) && m_document.first(fields.at(2)).isNull())
        m_problems.error(
            action, CheckText::tr("There is no section \"%1\" that lists what to write").arg(fields.at(2)));
}

void SlotParams::saveFileAs(const QDomElement &action, const QString &param)
{
    const QStringList fields = slotFields(param);
    if (fields.size() != 2)
        return wrongParam(action, QStringLiteral("file,address"));
    if (!isVariable(fields.first()))
        m_addresses.file(action, fields.first());
    address(action, fields.last());
}

void SlotParams::accessList(const QDomElement &action, const QString &tag)
{
    if (tag == QLatin1String("newok"))
        needDialogs(action, {dialogtags::UserNameTaken, dialogtags::UserNotAllowed, dialogtags::UserNameEmpty,
                             dialogtags::PasswordsDiffer});
    else if (tag == QLatin1String("remove"))
        needDialogs(action, {dialogtags::LastUser, dialogtags::UserNotAllowed});
    else if (tag != QLatin1String("edit") && tag != QLatin1String("new") && !isVariable(tag))
        return wrongField(action, tag, QStringLiteral("edit, new, newok, remove"));
    needList(action, QStringLiteral("accesslist"));
}

void SlotParams::softList(const QDomElement &action, const QString &tag)
{
    if (tag != QLatin1String("remove") && !isVariable(tag))
        return wrongField(action, tag, QStringLiteral("remove"));
    needDialogs(action, {dialogtags::PackageNeeded, dialogtags::RemovePackage});
    needList(action, QStringLiteral("softlist"));
}

void SlotParams::address(const QDomElement &action, const QString &address)
{
    if (!isVariable(address))
        m_addresses.value(action, address);
}

void SlotParams::needDialogs(const QDomElement &action, const QStringList &tags)
{
    QStringList missing;
    for (const QString &tag : tags) {
        open(tag);
        if (!isDialog(tag))
            missing.append(tag);
    }
    if (!missing.isEmpty())
        m_problems.error(action, CheckText::tr("This call may show dialogs that are missing: %1")
                                     .arg(missing.join(QStringLiteral(", "))));
}

void SlotParams::needList(const QDomElement &action, const QString &type)
{
    const QList<QDomElement> marks = m_document.elements(type);
    const bool isThere = std::any_of(marks.cbegin(), marks.cend(), [&](const QDomElement &mark) {
        return mark.parentNode().toElement().attribute(QStringLiteral("type")) == type;
    });
    if (!isThere)
        m_problems.error(
            action, CheckText::tr("This call works on the control with the tag \"%1\", and there is none of "
                                  "that type")
                        .arg(type));
}

void SlotParams::open(const QString &tag)
{
    m_opened.insert(elementId(m_document.first(tag).parentNode().toElement()));
}

bool SlotParams::isDialog(const QString &tag) const
{
    return m_parts.of(m_document.first(tag).parentNode().toElement()).kind == ActionTarget::Kind::Dialog;
}

void SlotParams::wrongField(const QDomElement &action, const QString &field, const QString &known)
{
    m_problems.error(action,
                     CheckText::tr("Unknown word \"%1\" in the parameter; known are %2").arg(field, known));
}

void SlotParams::wrongParam(const QDomElement &action, const QString &form)
{
    m_problems.error(action,
                     CheckText::tr("The parameter has the wrong number of fields; it must be %1").arg(form));
}

void SlotParams::finish()
{
    if (m_opensAny)
        return;
    for (const QDomElement &dialog : m_parts.dialogs) {
        if (!m_opened.contains(elementId(dialog)))
            m_problems.warning(dialog,
                               CheckText::tr("Nothing opens the dialog \"%1\"").arg(dialog.tagName()));
    }
}

} // namespace paravue
