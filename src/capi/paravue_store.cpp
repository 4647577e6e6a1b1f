#include "capi/CallGuard.h"
#include "capi/StoreRecord.h"
#include "capi/Structures.h"
#include "capi/Texts.h"
#include "capi/paravue.h"
#include "device/protocol/DeviceCommands.h"
#include "entry/FinishParavueSetup.h"

#include <QStringList>

#include <chrono>
#include <limits>

using namespace paravue;
using namespace paravue::capi;

namespace
{

/// The file of a path "file/section/key"; empty for any other text.
QString fileOfPath(const QString &path)
{
    constexpr int Parts = 3;
    const QStringList parts = path.split(u'/');
    return parts.size() == Parts && !parts.contains(QString()) ? parts.first() : QString();
}

/// Runs \a start as an exchange of its own.
template <typename Start>
paravue_result startExchange(const paravue_store *handle, Start start)
{
    return guarded(handle, [&start](Library &library, StoreRecord &record) -> paravue_result {
        if (library.isInCallback() || record.isRunning())
            return library.fail(PARAVUE_BUSY);
        record.prepare();
        const Library::Scope scope(Library::Scope::Kind::Wait);
        return start(library, record);
    });
}

paravue_result saveResult(Library &library, const StoreRecord &record, const SaveOutcome &save)
{
    switch (save.result) {
    case SaveOutcome::Result::Nothing:
        return record.outcome(library);
    case SaveOutcome::Result::Done:
        return PARAVUE_OK;
    case SaveOutcome::Result::Stopped:
        return library.fail(PARAVUE_CANCELLED, save.problem);
    case SaveOutcome::Result::Failed:
        break;
    }
    return library.fail(paravue::capi::resultOf(save.cause), save.problem);
}

} // namespace

paravue_result paravue_store_create(const char *address, size_t length, uint32_t flags, paravue_store **store)
{
    return guarded([&](Library &library) {
        if (!store)
            return library.fail(PARAVUE_WRONG_USE);
        *store = nullptr;
        const auto text = readText(address, length);
        if (!text || !text->contains(u'@') || (flags & ~PARAVUE_STORE_ASKS_FOR_LOGIN))
            return library.fail(PARAVUE_WRONG_USE);
        if ((flags & PARAVUE_STORE_ASKS_FOR_LOGIN) && !library.hasWindows())
            return library.fail(PARAVUE_NO_WINDOWS);
        *store = library.add(std::make_unique<StoreRecord>(*text, flags));
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_destroy(paravue_store *store)
{
    if (!store)
        return PARAVUE_OK;
    return guarded(store, [&](Library &library, StoreRecord &record) {
        if (library.isInside() || library.hasWindowOf(record))
            return library.fail(PARAVUE_BUSY);
        library.remove(store);
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_set_timeouts(paravue_store *store, uint32_t connection, uint32_t answer)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        // Qt's timers count in int.
        constexpr uint32_t Most = std::numeric_limits<int>::max();
        if (connection > Most || answer > Most)
            return library.fail(PARAVUE_WRONG_USE);
        record.store().setTimeouts(
            {std::chrono::milliseconds(connection), std::chrono::milliseconds(answer)});
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_set_observer(paravue_store *store, const paravue_observer *observer)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        const auto whole = observer ? wholeCopy(*observer) : paravue_observer{};
        if (!whole)
            return library.fail(PARAVUE_WRONG_USE);
        record.setObserver(*whole);
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_load(paravue_store *store)
{
    return startExchange(store, [](Library &, StoreRecord &record) {
        record.store().load();
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_save(paravue_store *store)
{
    return startExchange(store, [](Library &, StoreRecord &record) {
        record.store().flush();
        record.store().store();
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_function(paravue_store *store, const char *name, size_t name_length,
                                      const char *argument, size_t argument_length)
{
    return startExchange(store, [&](Library &library, StoreRecord &record) {
        const auto nameText = readText(name, name_length);
        const auto argumentText = readOptionalText(argument, argument_length);
        if (!nameText || !argumentText)
            return library.fail(PARAVUE_WRONG_USE);
        if (!findDeviceCommand(*nameText) && *nameText != u"save_settings")
            return library.fail(PARAVUE_NOT_FOUND);
        record.store().function(*nameText, *argumentText);
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_wait(paravue_store *store)
{
    return guarded(store, [](Library &library, StoreRecord &record) {
        return library.isInCallback() ? library.fail(PARAVUE_BUSY) : record.wait(library);
    });
}

paravue_result paravue_store_wait_for_save(paravue_store *store, uint32_t flags, uint32_t longest_silence)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        if (library.isInCallback())
            return library.fail(PARAVUE_BUSY);
        const bool asksUser = flags & PARAVUE_SAVE_ASKS_USER;
        if ((flags & ~PARAVUE_SAVE_ASKS_USER) || longest_silence > uint32_t(std::numeric_limits<int>::max()))
            return library.fail(PARAVUE_WRONG_USE);
        if (asksUser && !library.hasWindows())
            return library.fail(PARAVUE_NO_WINDOWS);
        FinishOptions options{asksUser};
        if (longest_silence > 0)
            options.longestSilence = int(longest_silence);
        const Library::Scope scope(Library::Scope::Kind::Wait);
        return saveResult(library, record, FinishParavueSetup(&record.store(), options));
    });
}

paravue_result paravue_store_reset(paravue_store *store)
{
    return guarded(store, [](Library &, StoreRecord &record) {
        record.reset();
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_get_value(paravue_store *store, const char *path, size_t path_length,
                                       char *buffer, size_t capacity, size_t *length)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        const QString pathText = readText(path, path_length).value_or(QString());
        const QString file = fileOfPath(pathText);
        if (file.isEmpty())
            return library.fail(PARAVUE_WRONG_USE);
        // An unknown file would be reported as a failure of the recorder.
        const auto value =
            record.store().fileExists(file) ? record.store().storedValue(pathText) : std::nullopt;
        return value ? writeText(library, *value, buffer, capacity, length) : library.fail(PARAVUE_NOT_FOUND);
    });
}

paravue_result paravue_store_set_value(paravue_store *store, const char *path, size_t path_length,
                                       const char *value, size_t value_length)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        const QString pathText = readText(path, path_length).value_or(QString());
        const auto valueText = readText(value, value_length);
        const QString file = fileOfPath(pathText);
        if (file.isEmpty() || !valueText)
            return library.fail(PARAVUE_WRONG_USE);
        if (!record.store().fileExists(file))
            return library.fail(PARAVUE_NOT_FOUND);
        record.store().setValue(pathText + u'/' + *valueText);
        return PARAVUE_OK;
    });
}

paravue_result paravue_store_files(paravue_store *store, int32_t which, char *buffer, size_t capacity,
                                   size_t *length)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        const SaveStatus &save = record.store().saveStatus();
        QStringList names;
        switch (which) {
        case PARAVUE_FILES_FETCHED:
            names = record.store().fetchedFiles();
            break;
        case PARAVUE_FILES_ARRIVED:
            names = save.arrived;
            break;
        case PARAVUE_FILES_MISSING:
            names = save.missing;
            break;
        case PARAVUE_FILES_REPLACED:
            names = save.replaced;
            break;
        default:
            return library.fail(PARAVUE_WRONG_USE);
        }
        QString list;
        for (const QString &name : std::as_const(names))
            list += name + u'\n';
        return writeText(library, list, buffer, capacity, length);
    });
}

paravue_result paravue_store_file_path(paravue_store *store, const char *name, size_t name_length,
                                       char *buffer, size_t capacity, size_t *length)
{
    return guarded(store, [&](Library &library, StoreRecord &record) {
        const auto nameText = readText(name, name_length);
        if (!nameText)
            return library.fail(PARAVUE_WRONG_USE);
        if (!record.store().fileExists(*nameText))
            return library.fail(PARAVUE_NOT_FOUND);
        // A running exchange reads and replaces the files itself.
        if (record.isRunning())
            return library.fail(PARAVUE_BUSY);
        record.store().flush();
        return writeText(library, record.store().filePath(*nameText), buffer, capacity, length);
    });
}
