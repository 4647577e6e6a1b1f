#pragma once

#include "ParavueSetupExport.h"
#include "store/LinkStatus.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

class OrbSettings;
class QIODevice;

namespace paravue
{
class StoreObserver;
}

/// The configuration store of a setup session: local copies of a recorder's configuration files, read and
/// written one value at a time through configuration addresses.
///
/// A configuration address is "file/section/key", optionally followed by "/rest". The rest may itself hold
/// "/"; it is the default value when an address is read and the new value when it is written. Keys of files
/// without section lines live in the section "untitled".
///
/// Edits stay in memory until flush() or destruction. Failures are never thrown: they are reported through
/// pseudothrow() with a translated text, and the call returns an empty result. Used from one thread only.
///
/// The base class is a purely local store; OrbNetSetup adds the link to a recorder. When the session with it
/// must not reach any recorder, not even for the pictures that a description names the source of, the host
/// sets its dynamic property "offline" to true before the session.
class PARAVUE_EXPORT OrbSetup : public QObject
{
    Q_OBJECT

public:
    OrbSetup();
    explicit OrbSetup(const QString &address);
    ~OrbSetup() override;

    /// Brings all files in. Ends with loadDone(). The base version has nothing to fetch.
    virtual void load();
    /// Sends all files out. Ends with storeDone(). The base version has nobody to send them to.
    virtual void store();
    /// Runs the function \a name; the base version knows "save_settings" (which calls store()) and answers
    /// any other name with progress(100).
    virtual void function(const QString &name, const QString &arg);

    void setAddress(const QString &address);
    /// The device that this store serves; OrbNetSetup documents the form.
    QString address() const;

    void setFilePath(const QString &name, const QString &path);
    /// The local path of the file \a name; reports "File ... does not exist" and returns "" without one.
    QString filePath(const QString &name);
    /// True when \a name has a local path. Never reports anything.
    bool fileExists(const QString &name);

    /// The names of the files that were fetched, which are those with a pristine copy beside them. The answer
    /// to a function ("tmp") is none of them.
    QStringList fetchedFiles() const;
    /// The files of which a value was asked for or set, in any order.
    QStringList usedFiles() const;

    /// The first three parts of \a address.
    static QString path(const QString &address);
    /// What follows the third part of \a address; a null string when there is nothing.
    static QString defValue(const QString &address);

    QString value(const QString &address);
    /// \a address carries the new value behind its third "/".
    void setValue(const QString &address);
    /// The value at \a path, "file/section/key"; nothing when there is none. Reports what value() does.
    std::optional<QString> storedValue(const QString &path);
    /// As setValue() with \a value, or without one as if the key had never been set; see
    /// OrbSettings::putBack().
    void putBack(const QString &path, const std::optional<QString> &value);
    /// \a observer is told of every change of a value from now on, until it is removed.
    void addObserver(paravue::StoreObserver &observer);
    void removeObserver(paravue::StoreObserver &observer);

    /// Section and key of \a address are regular expressions; the result lists every match as
    /// "file/section/key/value", in key order.
    QStringList regexp_values(const QString &address);

    /// Writes every file that was read or edited so far to the disk and reads it again.
    void flush();

    /// What the store is doing at the moment, in words for the user (which file is being fetched, for
    /// example); empty while it is idle. Up to date whenever progress() is emitted.
    QString activity() const;

    /// The state of the connection behind the store.
    const paravue::LinkStatus &linkStatus() const { return m_linkStatus; }
    /// What a message of pseudothrow() about the link means, in plain words for the user (translated); empty
    /// when the message says it itself. Valid from the signal on.
    QString explanation(const QString &message) const { return m_explanations.value(message); }
    /// True within a signal pseudothrow() that only tells what follows from a failure reported before: the
    /// recorder has closed the connection after it has refused something.
    bool isReportingConsequence() const { return m_isReportingConsequence; }
    /// What the recorder has added, in its own words, when it last accepted something in this exchange or the
    /// last one; mostly empty. Plain text.
    QString acceptance() const { return m_acceptance; }
    /// Gives up the exchange that runs or has failed: the connection is cut, nothing more is sent, functions
    /// that wait for its end are not done any more, and the next exchange can start. Files, values and edits
    /// stay; nothing is emitted. Does nothing while the link is idle.
    void resetLink();

    /// Which files of the last save the recorder has confirmed.
    const paravue::SaveStatus &saveStatus() const { return m_saveStatus; }
    /// Sends the missing files of the last save, and no others, as store() would, with the values that this
    /// save has had: what was edited since is dropped. Only while no exchange runs.
    void sendMissing();
    /// The missing files of the last save are not to be sent any more: the user has edited them since, or has
    /// discarded his edits. Does nothing while an exchange runs.
    void abandonSave();

    /// False for a local store, which has nobody to read from.
    bool hasReader() const { return bool(m_makeReader); }
    /// Another store of the same recorder, with the login in use, whose load() fetches the files \a only, or
    /// those that a save sends, and no others. It asks for a login as this store does. Null for a local
    /// store.
    std::unique_ptr<OrbSetup> reader(const std::optional<QStringList> &only = {}) const;
    /// Takes \a content as what the recorder has in the file \a name, as a fetch does: edits of the file are
    /// dropped. False, with a report, when it cannot be kept, and always for a local store.
    bool takeAsFetched(const QString &name, const QByteArray &content);

    /// What a user may lose by a function.
    enum class FunctionDanger {
        None,
        Data,    ///< something is gone for good: recordings, settings, a package
        Restart, ///< the recorder restarts, and records nothing meanwhile
    };
    /// What a call of function() does on the link.
    struct FunctionUse {
        bool startsExchange = false;
        QStringList addresses = {}; ///< of the values that it sends
        FunctionDanger danger = FunctionDanger::None;
    };
    FunctionUse functionUse(const QString &name, const QString &arg) const;

Q_SIGNALS:
    /// All files are there, or the report of a function.
    void loadDone();
    /// Everything was sent, or a function that is no report was done.
    void storeDone();
    /// \a prc is a percentage, 0 to 100.
    void progress(int prc);
    /// \a s is a translated error message for the user.
    void pseudothrow(QString s);

protected:
    /// The local file \a name, created on first use and kept for the life of the store.
    OrbSettings &settings(const QString &name);
    void setActivity(const QString &text);
    void setReportingConsequence(bool isReporting) { m_isReportingConsequence = isReporting; }
    void setLinkStatus(const paravue::LinkStatus &status);
    void setAcceptance(const QString &words) { m_acceptance = words; }
    /// Gives up the functions that wait for the link.
    void giveUpWaiting();
    void setExplanation(const QString &message, const QString &words);
    /// What resetLink() does; nothing by itself. A function object, as the virtual functions of stores are
    /// fixed.
    void setLinkReset(const std::function<void()> &reset) { m_linkReset = reset; }
    void setSaveStatus(const paravue::SaveStatus &status) { m_saveStatus = status; }
    void setMissingSender(const std::function<void()> &send) { m_sendMissing = send; }
    using ReaderFactory = std::function<std::unique_ptr<OrbSetup>(const std::optional<QStringList> &only)>;
    using FileTaker = std::function<bool(const QString &name, const QByteArray &content)>;
    /// What reader() and takeAsFetched() do.
    void setReading(const ReaderFactory &makeReader, const FileTaker &take);
    /// What functionUse() answers; without it no function starts an exchange.
    void setFunctionUse(const std::function<FunctionUse(const QString &, const QString &)> &use)
    {
        m_functionUse = use;
    }

    /// A settings-format reader and writer for a flat map of "section/key" to value, for derived classes and
    /// hosts. The device must be open; both switch it to text mode. They always return true.
    static bool myReadFunc(QIODevice &device, QMap<QString, QVariant> &map);
    static bool myWriteFunc(QIODevice &device, const QMap<QString, QVariant> &map);

    /// The files that were used so far, by name. Addresses come in runs of one file, so the file that was
    /// asked for last is found at once.
    class UsedFiles
    {
    public:
        UsedFiles();
        ~UsedFiles();
        Q_DISABLE_COPY_MOVE(UsedFiles)

        /// Null when \a name was not used yet.
        OrbSettings *find(QStringView name);
        OrbSettings &add(const QString &name, std::unique_ptr<OrbSettings> settings);
        QStringList names() const;
        void flush();
        /// Those of which \a isTemporary(path) is true stay unwritten.
        void forget(const std::function<bool(const QString &path)> &isTemporary);
        /// Writes and drops them all.
        void clear();

    private:
        /// Lets a file be found by a part of an address, without a copy of its name.
        struct NameHash {
            using is_transparent = void;
            size_t operator()(QStringView name) const noexcept { return qHash(name); }
        };
        struct SameName {
            using is_transparent = void;
            bool operator()(QStringView a, QStringView b) const noexcept { return a == b; }
        };
        using Files = std::unordered_map<QString, std::unique_ptr<OrbSettings>, NameHash, SameName>;

        Files m_files;
        const Files::value_type *m_last = nullptr;
    };

    QMap<QString, QString> m_filePaths;
    UsedFiles m_settings;
    QString m_address;

private:
    OrbSettings &settingsOf(QStringView name);
    void tellValueSet(QStringView path, const std::optional<QString> &value) const;

    std::vector<paravue::StoreObserver *> m_observers;
    QString m_activity;
    paravue::LinkStatus m_linkStatus;
    QString m_acceptance;
    bool m_isReportingConsequence = false;
    paravue::SaveStatus m_saveStatus;
    QHash<QString, QString> m_explanations; ///< by message
    std::function<void()> m_linkReset;
    std::function<void()> m_sendMissing;
    std::function<FunctionUse(const QString &, const QString &)> m_functionUse;
    ReaderFactory m_makeReader;
    FileTaker m_takeFile;
};
