#include "ui/binding/LocalPaths.h"

#include "entry/cSetupWidget.h"
#include "store/ConfigAddress.h"
#include "store/IniGrammar.h"
#include "store/OrbSetup.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/Assignment.h"

#include <QFileInfo>
#include <QScopedValueRollback>

namespace paravue
{
namespace
{

/// Does a file that the assignment was written to hold just this when it is read again? A line end in a
/// value, for example, makes another key of what follows.
bool readsBack(const Assignment &assignment)
{
    const QString text = assignment.text();
    if (text.contains(u'\n') || text.contains(u'\r') || QString::fromUtf8(text.toUtf8()) != text)
        return false;
    const QString entry = ConfigAddress(assignment.path).entry().toString();
    const QString section = entry.section(u'/', 0, 0);
    const QString key = entry.section(u'/', 1);
    const QString sectionLine = iniSectionLine(section);
    const QString keyLine = iniKeyLine(key, assignment.value, EmptyValue::IsKey);
    const auto readSection = scanIniLine(QStringView(sectionLine), EmptyValue::IsKey);
    const auto readKey = scanIniLine(QStringView(keyLine), EmptyValue::IsKey);
    return readSection.kind == readSection.Section && readSection.name == section &&
           readKey.kind == readKey.Key && readKey.name == key && readKey.value == assignment.value;
}

} // namespace

/// Who has written which value through a window. It belongs to the store: another window on the same store
/// must not take for the host's what an earlier description has written.
class ValueOrigins : public QObject
{
public:
    struct Entry {
        QString value;
        ValueOrigin origin;
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
    QSet<QString> unclearFiles;    ///< a description may have written other values than it seemed to

private:
    explicit ValueOrigins(OrbSetup &store) : QObject(&store) {}
};

LocalPaths::LocalPaths(ControlContext &context, PathQuestion ask)
    : m_context(context), m_ask(std::move(ask)), m_origins(ValueOrigins::of(context.store()))
{
}

void LocalPaths::written(const Assignment &assignment, ValueOrigin origin)
{
    if (!assignment.hasValue)
        return;
    m_origins->entries[assignment.path] = {assignment.value, origin};
    if (origin == ValueOrigin::Description && !readsBack(assignment))
        m_origins->unclearFiles.insert(ConfigAddress(assignment.path).file().toString());
}

bool LocalPaths::isTrusted(const QString &address)
{
    OrbSetup &store = m_context.store();
    const QString path = OrbSetup::path(address);
    const QString value = store.value(address);
    // A default stands in the description.
    if (store.value(path) != value)
        return false;
    const auto &origins = m_origins->entries;
    const auto known = origins.constFind(path);
    if (known != origins.constEnd() && known->value == value)
        return known->origin == ValueOrigin::Person;
    const QString file = ConfigAddress(path).file().toString();
    return !m_origins->unclearFiles.contains(file) && !isOfRecorder(file);
}

/// What was fetched has a pristine copy beside it. Its values are not compared: the directives of a state
/// file change them.
bool LocalPaths::isOfRecorder(const QString &file)
{
    OrbSetup &store = m_context.store();
    const QString original = file + QStringLiteral(".original");
    return store.fileExists(original) && QFileInfo(store.filePath(original)).size() > 0;
}

std::optional<QString> LocalPaths::permitted(const QString &address, PathUse use)
{
    const QString path = m_context.store().value(address);
    if (path.isEmpty() || isTrusted(address))
        return path;
    // While the question was on the screen something else may have been written.
    if (!asksSuccessfully({path, use}) || m_context.store().value(address) != path)
        return std::nullopt;
    return path;
}

bool LocalPaths::asksSuccessfully(const Question &question)
{
    if (m_allowed.contains(question))
        return true;
    const bool isTask = m_context.isUnattended();
    // A task comes back with its question every half second.
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

bool LocalPaths::permitsCall(const QWidget &target, const QString &slot, const QString &param)
{
    static const QString installation = QStringLiteral("soft_istall_packet,");
    if (slot != QLatin1String("callSetup") || !param.startsWith(installation) ||
        !qobject_cast<const cSetupWidget *>(&target))
        return true;
    return permitted(param.mid(installation.size()), PathUse::Read).has_value();
}

} // namespace paravue
