#include "device/OrbNetSetup.h"

#include "device/LinkLog.h"
#include "device/LocalFiles.h"
#include "device/protocol/DescriptionFileList.h"
#include "device/protocol/GzText.h"
#include "device/protocol/Limits.h"
#include "device/protocol/ReplyFrame.h"
#include "device/protocol/WireBody.h"
#include "store/FileName.h"
#include "store/LogText.h"
#include "store/OrbSettings.h"
#include "store/StateTemplate.h"
#include "store/WholeFile.h"

#include <QFile>
#include <QTcpSocket>

#include <algorithm>

using namespace paravue;

// The interface description comes first: it may replace the rest of the list.
const OrbNetSetup::commands OrbNetSetup::mCommands[9] = {
    {"GET SETUP\r\n", nullptr, "interface", &OrbNetSetup::_push_interfacefile},
    {"GET CONFIG\r\n", "PUT CONFIG\r\n", "streams", &OrbNetSetup::_push_file},
    {"GET NET CONFIG\r\n", "PUT NET CONFIG\r\n", "net", &OrbNetSetup::_push_inifile},
    {"GET TIME CONFIG\r\n", "PUT TIME CONFIG\r\n", "time", &OrbNetSetup::_push_inifile},
    {"GET TIMER CONFIG\r\n", "PUT TIMER CONFIG\r\n", "timers", &OrbNetSetup::_push_file},
    {"GET SOFT CONFIG\r\n", nullptr, "soft", &OrbNetSetup::_push_inifile},
    {"GET DISK CONFIG\r\n", "PUT DISK CONFIG\r\n", "disk", &OrbNetSetup::_push_inifile},
    {"GET USER CONFIG\r\n", "PUT USER CONFIG\r\n", "users", &OrbNetSetup::_push_inifile},
    {"GET STATE CONFIG\r\n", "PUT STATE CONFIG\r\n", "state", &OrbNetSetup::_push_statefile},
};

namespace
{

/// What a one-off command sends, and what it fetches.
const QString CommandFile = QStringLiteral("tmp");

/// A file that cannot be opened, or has no path, counts as empty. Nothing when it was opened but cannot be
/// read to its end.
std::optional<QByteArray> readLocalFile(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(content)) : std::nullopt;
}

} // namespace

QStringList OrbNetSetup::fileNames(const QByteArray &description)
{
    QStringList names;
    if (const auto files = readDescriptionFileList(description)) {
        for (const ListedFile &file : *files) {
            if (isPlainFileName(file.name))
                names.append(file.name);
        }
    } else {
        for (const commands &entry : mCommands)
            names.append(QString::fromLatin1(entry.name));
    }
    return names;
}

void OrbNetSetup::fillCommandList()
{
    m_cmdlist.clear();
    m_notSent.clear();
    m_isSaveIncomplete = false;
    for (const commands &entry : mCommands) {
        m_cmdlist.push_back(std::make_unique<compcommand>(
            compcommand{entry.get_command, entry.put_command, entry.name, entry.push}));
    }
    noteUnsentFiles();
}

/// Tells which files no save sends, so that their edits do not count as changes.
void OrbNetSetup::noteUnsentFiles()
{
    QStringList names;
    for (const auto &entry : m_cmdlist) {
        if (entry->put.isEmpty())
            names << QString::fromUtf8(entry->name);
    }
    setProperty("unsentFiles", names);
}

void OrbNetSetup::load()
{
    m_buffer.clear();
    m_reply->reset();
    fillCommandList();
    restrictFetch();
    m_operation = Fetch;
    _connect();
}

std::unique_ptr<OrbSetup> OrbNetSetup::makeReader(const std::optional<QStringList> &only)
{
    const QString description = QStringLiteral("interface");
    auto reader = std::make_unique<OrbNetSetup>(address());
    reader->m_credentialsSource = m_credentialsSource;
    reader->m_timeouts = m_timeouts;
    reader->m_partialFetch = PartialFetch{
        fileExists(description) ? readLocalFile(filePath(description)).value_or(QByteArray()) : QByteArray(),
        only};
    return reader;
}

/// Leaves out of the command list what a partial fetch has no use for.
void OrbNetSetup::restrictFetch()
{
    if (!m_partialFetch)
        return;
    replaceCommandList(m_partialFetch->description);
    const auto &only = m_partialFetch->only;
    for (const auto &entry : m_cmdlist) {
        if (only ? !only->contains(QString::fromUtf8(entry->name)) : entry->put.isEmpty())
            entry->get.clear();
    }
}

void OrbNetSetup::store()
{
    startSave(std::nullopt);
}

void OrbNetSetup::sendFiles(const QStringList &names)
{
    setSaveStatus({});
    startSave(names);
}

void OrbNetSetup::stopSending()
{
    if (m_operation != Send)
        return;
    const int running = m_state - FirstCommand; // below 0 until the login was accepted
    for (int i = std::max(running + 1, 0); i < commandCount(); ++i)
        m_cmdlist[static_cast<size_t>(i)]->put.clear();
}

/// Sends the files \a only, or all of them.
void OrbNetSetup::startSave(const std::optional<QStringList> &only)
{
    const QString description = QStringLiteral("interface");
    if (m_notKept.contains(description) && !fileExists(description)) {
        // Which files the recorder has is not known.
        Q_EMIT pseudothrow(tr("Can't save a local copy of \"%1\"").arg(description));
        return;
    }
    // Deliberate: a time file that is sent back must not set the recorder's clock to the hour of its fetch.
    if (fileExists(QStringLiteral("time")))
        setValue(QStringLiteral("time/untitled/YYYYMMDDHHMMSS/"));
    fillCommandList();
    m_operation = Send;
    _overwrite_cmdlist(description);
    expectArrivals(only);
    compileStates();
    flush();
    for (const auto &entry : m_cmdlist) {
        if (!entry->put.isEmpty() && !isKeptLocally(QString::fromUtf8(entry->name))) {
            m_notSent << QString::fromUtf8(entry->name);
            leaveOut(*entry);
        }
    }
    m_state = Idle;
    _connect();
}

/// Takes back what was edited in the files \a names since the last save has written them.
void OrbNetSetup::dropLaterEdits(const QStringList &names)
{
    for (const QString &name : names) {
        OrbSettings *settings = m_settings.find(name);
        if (settings && settings->isWritten() && settings->hasEdits())
            settings->forget();
    }
}

void OrbNetSetup::expectArrivals(const std::optional<QStringList> &only)
{
    SaveStatus status;
    if (only) {
        status.arrived = saveStatus().arrived;
        status.unanswered = saveStatus().unanswered;
    }
    for (const auto &entry : m_cmdlist) {
        const QString name = QString::fromUtf8(entry->name);
        if (only && !only->contains(name))
            entry->put.clear();
        else if (!entry->put.isEmpty())
            status.missing << name;
    }
    setSaveStatus(status);
}

/// Applies the directives of the state files that are to be sent.
void OrbNetSetup::compileStates()
{
    QStringList asFetched; // those without edits, which are sent in the form that they came in
    // By index: a report on the way may run an event loop, and with it whatever else uses the list.
    for (size_t i = 0; i < m_cmdlist.size(); ++i) {
        const QString name = QString::fromUtf8(m_cmdlist[i]->name);
        if (m_cmdlist[i]->push != &OrbNetSetup::_push_statefile || m_cmdlist[i]->put.isEmpty())
            continue;
        const OrbSettings *settings = m_settings.find(name);
        const bool isEdited = settings && settings->hasEdits();
        if (!isEdited)
            asFetched << name;
        if (!_compile_state(name) && i < m_cmdlist.size())
            leaveOut(*m_cmdlist[i]);
    }
    // The directives of other files may have read their values meanwhile.
    for (const QString &name : std::as_const(asFetched)) {
        if (OrbSettings *settings = m_settings.find(name))
            settings->forget();
    }
}

void OrbNetSetup::noteArrival(const QString &name)
{
    SaveStatus status = saveStatus();
    if (!status.missing.removeOne(name))
        return; // the body of a function
    status.arrived << name;
    setSaveStatus(status);
}

void OrbNetSetup::noteUnanswered(const QString &name)
{
    SaveStatus status = saveStatus();
    status.unanswered = status.missing.contains(name) ? name : QString();
    setSaveStatus(status);
}

/// A file that was fetched anew holds nothing of the last save any more.
void OrbNetSetup::noteReplacement(const QString &name)
{
    SaveStatus status = saveStatus();
    if (!status.missing.removeOne(name))
        return;
    if (status.unanswered == name)
        status.unanswered.clear();
    status.replaced << name;
    setSaveStatus(status);
}

/// The save goes on without this file and does not count as done.
void OrbNetSetup::leaveOut(compcommand &command)
{
    command.put.clear();
    m_isSaveIncomplete = true;
}

/// False when the local copy of the file \a name is not what was fetched and edited: sent, it would bring old
/// values, or none, to the recorder.
bool OrbNetSetup::isKeptLocally(const QString &name)
{
    const OrbSettings *settings = m_settings.find(name);
    return !m_notKept.contains(name) && (!settings || settings->path().isEmpty() || settings->isWritten());
}

void OrbNetSetup::_transfer()
{
    do {
        commandNext();
        if (commandIsDone()) {
            setActivity(QString());
            return;
        }
    } while (requestOf(commandCurrent()).isEmpty() || !sendRequest(commandCurrent()));
}

/// What the running operation has to say about \a command; nothing when it has no use for it.
QByteArray OrbNetSetup::requestOf(const compcommand &command) const
{
    switch (m_operation) {
    case Fetch:
        return command.get;
    case Send:
        return _isFileChanged(QString::fromUtf8(command.name)) ? command.put : QByteArray();
    default:
        return {};
    }
}

/// False when the file to be sent cannot be read.
bool OrbNetSetup::sendRequest(const compcommand &command)
{
    const QByteArray request = requestOf(command);
    const QString name = QString::fromUtf8(command.name);
    if (name == CommandFile)
        setActivity(tr("Waiting for the recorder"));
    else
        setActivity(m_operation == Send ? tr("Sending \"%1\"").arg(name) : tr("Fetching \"%1\"").arg(name));
    // Before the request is written: looking for the file may report something, and whoever shows the report
    // may run an event loop, which would send the request without its body.
    const int exchange = m_exchange;
    const auto content = m_operation == Send ? readLocalFile(filePath(name)) : QByteArray();
    if (exchange != m_exchange)
        return true; // it was given up meanwhile
    if (!content) {
        m_notSent << name;
        m_isSaveIncomplete = true;
        return false;
    }
    const QByteArray body = m_operation == Send ? wireBody(*content) : QByteArray();
    qCInfo(linkLog).noquote() << linkLogName(address()) << "sent" << logText(QString::fromLocal8Bit(request))
                              << "for" << name << "with" << body.size() << "bytes";
    if (m_operation == Send)
        noteUnanswered(name);
    m_socket->write(request);
    if (!body.isEmpty())
        m_socket->write(body);
    return true;
}

bool OrbNetSetup::_isFileChanged(const QString &) const
{
    return true;
}

QByteArray OrbNetSetup::_to_cmdstring(const QString &text)
{
    return text.isEmpty() ? QByteArray() : (text + QLatin1StringView("\r\n")).toLocal8Bit();
}

/// Keeps \a data as the file \a name and its pristine copy. When there is no room for both, the file stays
/// what it was, with a report, and is not sent until a later fetch succeeds.
bool OrbNetSetup::keepLocalCopies(const QString &name, const QByteArray &data)
{
    const QString original = name + QLatin1StringView(".original");
    const QString path = m_temporaries->add(name, data);
    const QString originalPath = path.isEmpty() ? QString() : m_temporaries->add(original, data);
    if (originalPath.isEmpty()) {
        if (!path.isEmpty())
            m_temporaries->takeBack(name);
        m_notKept.insert(name);
        noteLocalProblem();
        Q_EMIT pseudothrow(tr("Can't save a local copy of \"%1\"").arg(name));
        return false;
    }
    m_notKept.remove(name);
    noteReplacement(name);
    setFilePath(name, path);
    setFilePath(original, originalPath);
    forgetValues(name);
    forgetValues(original);
    return true;
}

void OrbNetSetup::noteLocalProblem()
{
    LinkStatus status = linkStatus();
    status.cause = LinkStatus::Cause::LocalFile;
    setLinkStatus(status);
}

/// Values that were read from an earlier copy of the file \a name, and edits of it, are dropped: what is
/// shown, edited and sent is the copy that is registered now.
void OrbNetSetup::forgetValues(const QString &name)
{
    if (OrbSettings *settings = m_settings.find(name))
        settings->setPath(filePath(name));
}

void OrbNetSetup::_push_file(const QString &name, const QByteArray &data)
{
    keepLocalCopies(name, data);
}

void OrbNetSetup::_push_inifile(const QString &name, const QByteArray &data)
{
    _push_file(name, UntitledHeader.toByteArray() + data);
}

void OrbNetSetup::_push_statefile(const QString &name, const QByteArray &data)
{
    _push_file(name, data);
}

/// Nothing, with a report, when \a packed unpacks to more than a description may be.
std::optional<QByteArray> OrbNetSetup::unpacked(const QByteArray &packed, const QString &name)
{
    auto content = gunzipped(packed, MaxDescriptionBytes);
    if (!content)
        Q_EMIT pseudothrow(tr("File \"%1\" is too large").arg(name));
    return content;
}

void OrbNetSetup::_push_gzfile(const QString &name, const QByteArray &data)
{
    if (const auto content = unpacked(data, name))
        _push_file(name, *content);
}

void OrbNetSetup::_push_interfacefile(const QString &name, const QByteArray &data)
{
    const auto content = unpacked(data, name);
    if (!content)
        return;
    _push_file(name, *content);
    replaceCommandList(*content);
}

void OrbNetSetup::_overwrite_cmdlist(const QString &name)
{
    if (fileExists(name))
        replaceCommandList(readLocalFile(filePath(name)).value_or(QByteArray()));
}

void OrbNetSetup::replaceCommandList(const QByteArray &description)
{
    // A copy: a report may run an event loop, and a fetch within it.
    const std::optional<QList<ListedFile>> files = m_fileList->of(description);
    if (!files)
        return;
    if (files->size() > MaxListedFiles) {
        Q_EMIT pseudothrow(tr("The interface description lists more than %1 files").arg(MaxListedFiles));
        return;
    }
    // Deliberate: the position in the list stays. The first file of a list stands for the description itself,
    // which has just been fetched.
    m_cmdlist.clear();
    for (const ListedFile &file : *files)
        m_cmdlist.push_back(compiled(file));
    noteUnsentFiles();
}

std::unique_ptr<OrbNetSetup::compcommand> OrbNetSetup::compiled(const ListedFile &file) const
{
    const auto handlerOf = [](ListedFile::Kind kind) -> PushHandler {
        switch (kind) {
        case ListedFile::Kind::Sectionless:
            return &OrbNetSetup::_push_inifile;
        case ListedFile::Kind::State:
            return &OrbNetSetup::_push_statefile;
        case ListedFile::Kind::AsItComes:
            break;
        }
        return &OrbNetSetup::_push_file;
    };
    return std::make_unique<compcommand>(compcommand{_to_cmdstring(file.getCommand),
                                                     _to_cmdstring(file.putCommand), file.name.toUtf8(),
                                                     handlerOf(file.kind)});
}

/// False when the file must not be sent.
bool OrbNetSetup::_compile_state(const QString &name)
{
    if (!fileExists(name))
        return true;
    const QString path = filePath(name);
    // Edits go to the disk first. Without any the text is taken as it came: a write would give its keys the
    // usual form, which the patterns of the directives are not made for.
    OrbSettings *settings = m_settings.find(name);
    const auto content =
        settings && settings->hasEdits() && !settings->write() ? std::nullopt : readLocalFile(path);
    if (!content) {
        m_notSent << name;
        return false;
    }
    const QString text = QString::fromUtf8(*content);
    const CompiledState compiled =
        applyStateDirectives(text, [this](const QString &address) { return value(address); });
    switch (compiled.fault) {
    case CompiledState::Fault::TooLarge:
        Q_EMIT pseudothrow(tr("The directives of file \"%1\" make it too large").arg(name));
        return false;
    case CompiledState::Fault::TooSlow:
        Q_EMIT pseudothrow(tr("The directives of file \"%1\" take too long").arg(name));
        return false;
    case CompiledState::Fault::None:
        break;
    }
    if (compiled.text != text && !writeWholeFile(path, compiled.text.toUtf8())) {
        m_notSent << name;
        return false;
    }
    // What was read is read again: the next flush would put the text of before back. Looking up a value above
    // may be what has read the file.
    forgetValues(name);
    return true;
}

void OrbNetSetup::_do_command(const QByteArray &command, const QByteArray &body, bool send)
{
    if (!keepLocalCopies(CommandFile, body))
        return; // the body of an earlier command must not go out in its place
    // An exchange that never began, for want of a login for example, leaves its list behind. A format that
    // was given up must not go out together with the next command.
    if (m_state == Idle) {
        m_cmdlist.clear();
        m_notSent.clear();
        m_isSaveIncomplete = false;
    }
    m_cmdlist.push_back(std::make_unique<compcommand>(
        compcommand{command, command, CommandFile.toUtf8(), &OrbNetSetup::_push_file}));
    m_operation = send ? Send : Fetch;
    _connect();
}

void OrbNetSetup::_do_command(const QString &command, const QString &body, bool send)
{
    _do_command(command.toUtf8(), body.toUtf8(), send);
}
