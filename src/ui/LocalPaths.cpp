#include "ui/LocalPaths.h"

#include "entry/cSetupWidget.h"
#include "store/ConfigAddress.h"
#include "store/IniMapCodec.h"
#include "store/OrbSetup.h"
#include "ui/ControlContext.h"

#include <QFile>
#include <QScopedValueRollback>
#include <QVariant>

namespace paravue
{
namespace
{

/// The value of \a entry ("section/key") in the file at \a path.
QString valueInFile(const QString &path, const QString &entry)
{
    QFile file(path);
    QMap<QString, QVariant> values;
    if (file.open(QIODevice::ReadOnly))
        readIniMap(file, values);
    return values.value(entry).toString();
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

private:
    explicit ValueOrigins(OrbSetup &store) : QObject(&store) {}
};

LocalPaths::LocalPaths(ControlContext &context, PathQuestion ask)
    : m_context(context), m_ask(std::move(ask)), m_origins(ValueOrigins::of(context.store()))
{
}

void LocalPaths::written(const QString &assignment, ValueOrigin origin)
{
    const ConfigAddress parts(assignment);
    if (parts.hasRest())
        m_origins->entries[parts.path().toString()] = {parts.rest().toString(), origin};
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
    return !isOfRecorder(path, value);
}

/// What was fetched has a pristine copy beside it.
bool LocalPaths::isOfRecorder(const QString &address, const QString &value)
{
    OrbSetup &store = m_context.store();
    const ConfigAddress parts(address);
    const QString original = parts.file().toString() + QStringLiteral(".original");
    return store.fileExists(original) &&
           valueInFile(store.filePath(original), parts.entry().toString()) == value;
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
    const bool isTask = m_context.unattended();
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
