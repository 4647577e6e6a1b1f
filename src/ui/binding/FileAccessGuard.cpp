#include "ui/binding/FileAccessGuard.h"

#include "entry/cSetupWidget.h"
#include "store/ConfigAddress.h"
#include "store/IniGrammar.h"
#include "store/OrbSetup.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/Assignment.h"

#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>

namespace paravue
{
namespace
{

/// Whether section and key survive being written to a file and read again unchanged. A line end, for example,
/// turns what follows into another key.
bool readsBack(const QString &path)
{
    if (path.contains(u'\n') || path.contains(u'\r') || QString::fromUtf8(path.toUtf8()) != path)
        return false;
    const QString entry = ConfigAddress(path).entry().toString();
    const QString section = entry.section(u'/', 0, 0);
    const QString key = entry.section(u'/', 1);
    const QString sectionLine = iniSectionLine(section);
    const QString keyLine = iniKeyLine(key, {}, EmptyValue::IsKey);
    const auto readSection = scanIniLine(QStringView(sectionLine), EmptyValue::IsKey);
    const auto readKey = scanIniLine(QStringView(keyLine), EmptyValue::IsKey);
    return readSection.kind == readSection.Section && readSection.name == section &&
           readKey.kind == readKey.Key && readKey.name == key;
}

/// The same for a value, which is written between single quotes where it needs any.
bool valueReadsBack(QStringView value)
{
    const auto endsValue = [](QChar c) { return c == u'\'' || c == u'\n' || c == u'\r'; };
    return std::none_of(value.begin(), value.end(), endsValue) && value.isValidUtf16();
}

} // namespace

/// Records who has written which value through a window. It is attached to the store, so that another window
/// on the same store does not mistake values of an earlier description for the host's.
class ValueOrigins : public QObject
{
public:
    struct Entry {
        QString value;
        ValueOrigin origin;
        bool pathReadsBack;
    };

    static ValueOrigins *of(OrbSetup &store)
    {
        for (QObject *child : store.children()) {
            if (auto *origins = dynamic_cast<ValueOrigins *>(child))
                return origins;
        }
        return new ValueOrigins(store);
    }

    QHash<QString, Entry> entries; ///< by file/section/key
    QSet<QString>
        unclearFiles; ///< files in which a description may have written other keys than its addresses say

private:
    explicit ValueOrigins(OrbSetup &store) : QObject(&store) {}
};

FileAccessGuard::FileAccessGuard(ControlContext &context, PathQuestion ask)
    : m_context(context), m_ask(std::move(ask)), m_origins(ValueOrigins::of(context.store()))
{
}

void FileAccessGuard::written(const Assignment &assignment, ValueOrigin origin)
{
    if (!assignment.hasValue)
        return;
    auto &entries = m_origins->entries;
    auto entry = entries.find(assignment.path);
    if (entry == entries.end())
        entry = entries.insert(assignment.path, {{}, origin, readsBack(assignment.path)});
    entry->value = assignment.value;
    entry->origin = origin;
    if (origin == ValueOrigin::Description && !(entry->pathReadsBack && valueReadsBack(assignment.value)))
        m_origins->unclearFiles.insert(ConfigAddress(assignment.path).file().toString());
}

bool FileAccessGuard::isTrusted(const QString &address)
{
    OrbSetup &store = m_context.store();
    const QString path = OrbSetup::path(address);
    const QString value = store.value(address);
    // The default of an address comes from the description.
    if (store.value(path) != value)
        return false;
    const auto &origins = m_origins->entries;
    const auto known = origins.constFind(path);
    if (known != origins.constEnd() && known->value == value)
        return known->origin == ValueOrigin::Person;
    const QString file = ConfigAddress(path).file().toString();
    return !m_origins->unclearFiles.contains(file) && !isOfRecorder(file);
}

/// A fetched file has a pristine copy. Its values are not compared: the directives of a state file change
/// them.
bool FileAccessGuard::isOfRecorder(const QString &file)
{
    OrbSetup &store = m_context.store();
    const QString original = file + QStringLiteral(".original");
    return store.fileExists(original) && QFileInfo(store.filePath(original)).size() > 0;
}

std::optional<QString> FileAccessGuard::permitted(const QString &address, FileUse use)
{
    const QString path = m_context.store().value(address);
    if (path.isEmpty() || isTrusted(address))
        return path;
    // While the question was on the screen something else may have been written.
    if (!asksSuccessfully({path, use}) || m_context.store().value(address) != path)
        return std::nullopt;
    return path;
}

bool FileAccessGuard::asksSuccessfully(const Question &question)
{
    if (m_allowed.contains(question))
        return true;
    const bool isTask = m_context.isUnattended();
    // A time task would repeat its question every half second.
    if (m_isAsking || !m_ask || (isTask && m_refusedToTasks.contains(question)))
        return false;
    const QScopedValueRollback asking(m_isAsking, true);
    const bool allowed = m_ask(question.first, question.second);
    if (allowed)
        m_allowed.insert(question);
    else if (isTask)
        m_refusedToTasks.insert(question);
    return allowed;
}

bool FileAccessGuard::permitsCall(const QWidget &target, const QString &slot, const QString &param)
{
    static const QString installation = QStringLiteral("soft_istall_packet,");
    if (slot != QLatin1String("callSetup") || !param.startsWith(installation) ||
        !qobject_cast<const cSetupWidget *>(&target))
        return true;
    return permitted(param.mid(installation.size()), FileUse::Read).has_value();
}

} // namespace paravue
