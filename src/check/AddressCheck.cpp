#include "check/AddressCheck.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "device/OrbNetSetup.h"
#include "store/ConfigAddress.h"
#include "store/FileName.h"
#include "store/TextPattern.h"

namespace paravue
{
namespace
{

/// Files of the session that no recorder sends: what the user enters, and the answers of functions.
bool isLocalFile(QStringView name)
{
    return name == u"general" || name == u"tmp";
}

/// The store keeps a pristine copy of every fetched file.
QString withoutOriginal(const QString &name)
{
    const QLatin1StringView suffix(".original");
    return name.endsWith(suffix) ? name.chopped(suffix.size()) : name;
}

} // namespace

AddressCheck::AddressCheck(const QDomElement &root, const QString &filesFolder, ProblemList &problems)
    : m_problems(problems), m_folder(filesFolder)
{
    const QStringList names = OrbNetSetup::fileNames();
    m_builtIn = QSet<QString>(names.begin(), names.end());
    if (const QDomElement list = root.firstChildElement(QStringLiteral("di")); !list.isNull())
        readOwnFiles(list);
}

void AddressCheck::readOwnFiles(const QDomElement &list)
{
    const QString tag = QStringLiteral("difile");
    m_own.emplace();
    for (QDomElement file = list.firstChildElement(tag); !file.isNull(); file = file.nextSiblingElement(tag))
        ownFile(file, m_own->isEmpty());
}

void AddressCheck::ownFile(const QDomElement &file, bool isFirst)
{
    const QString name = file.attribute(QStringLiteral("name"));
    const QString type = file.attribute(QStringLiteral("type"));
    if (!isPlainFileName(name))
        m_problems.error(file, CheckText::tr("\"%1\" is no name for a configuration file").arg(name));
    else if (m_own->contains(name))
        m_problems.warning(file, CheckText::tr("The file \"%1\" is listed twice").arg(name));
    if (isFirst && name != QLatin1String("interface"))
        m_problems.warning(
            file, CheckText::tr("The first file of the list stands for the description itself and is not "
                                "fetched; it should be \"interface\", not \"%1\"")
                      .arg(name));
    const bool isKnown = type.isEmpty() || type == QLatin1String("inifile") ||
                         type == QLatin1String("sectionless") || type == QLatin1String("state");
    if (!isFirst && file.attribute(QStringLiteral("get_command")).isEmpty())
        m_problems.warning(file,
                           CheckText::tr("Without a get_command the file \"%1\" is not fetched").arg(name));
    if (!isKnown)
        m_problems.warning(file, CheckText::tr("Unknown file type \"%1\" counts as \"inifile\"").arg(type));
    m_own->insert(name);
}

bool AddressCheck::file(const QDomElement &at, const QString &written)
{
    const QString name = withoutOriginal(written);
    if (isLocalFile(name) || (m_own && m_own->contains(name)))
        return true;
    if (!m_builtIn.contains(name)) {
        m_problems.error(
            at, CheckText::tr("No recorder sends a file \"%1\", and the description does not list it")
                    .arg(written));
        return false;
    }
    if (m_own && !m_reported.contains(name)) {
        m_reported.insert(name);
        m_problems.warning(
            at, CheckText::tr("The file \"%1\" is not in the list of files of the description, so it "
                              "is not fetched")
                    .arg(name));
    }
    return true;
}

void AddressCheck::value(const QDomElement &at, const QString &text)
{
    const ConfigAddress address(text);
    if (!address.hasKey()) {
        m_problems.error(at, CheckText::tr("\"%1\" is no address; that would be file/section/key").arg(text));
        return;
    }
    if (file(at, address.file().toString()) && !address.hasRest())
        key(at, address);
}

void AddressCheck::assignment(const QDomElement &at, const QString &text)
{
    const ConfigAddress address(text);
    if (!address.hasRest()) {
        m_problems.error(
            at,
            CheckText::tr("\"%1\" has no value to write; that would be file/section/key/value").arg(text));
        return;
    }
    if (file(at, address.file().toString()))
        key(at, address);
}

void AddressCheck::group(const QDomElement &at, const QString &prefix, const QString &member)
{
    if (prefix.count(u'/') != 1) {
        m_problems.error(
            at, CheckText::tr("\"%1\" is no group of values; that would be file/section").arg(prefix));
        return;
    }
    const QString path = prefix + member;
    const ConfigAddress address(path);
    if (file(at, address.file().toString()) && !member.isEmpty())
        key(at, address);
}

void AddressCheck::pattern(const QDomElement &at, const QString &text)
{
    const ConfigAddress address(text);
    if (!address.hasKey()) {
        m_problems.error(at, CheckText::tr("\"%1\" is no address; that would be file/section/key").arg(text));
        return;
    }
    file(at, address.file().toString());
    if (const QString fault = TextPattern::fault(address.entry().toString()); !fault.isEmpty())
        m_problems.error(
            at, CheckText::tr("The regular expression \"%1\" is invalid: %2").arg(address.entry(), fault));
}

void AddressCheck::rows(const QDomElement &at, const QString &text, const QString &count)
{
    const ConfigAddress address(text);
    if (!address.hasKey() || address.hasRest()) {
        value(at, text);
        return;
    }
    if (!file(at, address.file().toString()))
        return;
    const ConfigAddress counted(count);
    const auto rows = m_folder.value(counted.file().toString(), counted.entry().toString());
    if (rows && rows->toInt() > 0) {
        const QString first = text + u'0';
        key(at, ConfigAddress(first));
    }
}

void AddressCheck::key(const QDomElement &at, const ConfigAddress &address)
{
    const QString name = withoutOriginal(address.file().toString());
    if (!m_folder.isGiven() || isLocalFile(name) || m_reported.contains(name))
        return;
    if (!m_folder.holds(name)) {
        m_reported.insert(name);
        m_problems.warning(at, CheckText::tr("The folder of files has no \"%1\"").arg(name));
        return;
    }
    const QString path = address.path().toString();
    if (m_reported.contains(path) || m_folder.value(name, address.entry().toString()))
        return;
    m_reported.insert(path);
    m_problems.warning(at, CheckText::tr("The file \"%1\" has no key \"%2\"").arg(name, address.entry()));
}

} // namespace paravue
