#pragma once

#include "device/login/Credentials.h"
#include "store/OrbSetup.h"

#include <QAbstractSocket>
#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QTcpSocket;
class QTimer;

namespace paravue
{
struct DeviceCommand;
class KnownFileList;
class LocalFiles;
class ReplyFrame;
struct ListedFile;
} // namespace paravue

/// The configuration store of one recorder, which it is fetched from and sent back to over TCP.
///
/// The address has the form login:password\@address[:port]; the port is 5049 when it is left out. load()
/// fetches the interface description and every configuration file into local copies, each with a pristine
/// copy under its name and ".original"; store() sends the files back. Either is one exchange: connect, log
/// in, one command after the other, disconnect. It ends with loadDone() or storeDone(); progress() tells how
/// far it is. The store is busy until after the receivers of these signals have returned: they start the next
/// exchange through the event loop.
///
/// A file whose local copy or edits cannot be written whole (a full disk) is left out of a save, so that the
/// recorder never gets old values or an empty file in its place. Its edits stay, one message at the end of
/// the save names all such files, and storeDone() is not emitted. A function whose body cannot be kept starts
/// no exchange.
///
/// What goes wrong is reported through pseudothrow(). An exchange that failed stays where it is: no further
/// command is sent, nothing is reset, and another load() reports a wrong state; store() starts over in any
/// state. Unless the host sets time-outs, an exchange waits for the recorder without a limit.
///
/// The local copies are readable by their owner only and are removed with the store. A receiver of its
/// signals may delete the store while an exchange runs; in one of load(), store(), function() or the access
/// to a value, deleteLater() has to do.
class PARAVUE_EXPORT OrbNetSetup : public OrbSetup
{
    Q_OBJECT

public:
    static constexpr quint16 DefaultPort = 5049;

    explicit OrbNetSetup(const QString &address);
    ~OrbNetSetup() override;

    void load() override;
    void store() override;
    void function(const QString &name, const QString &arg) override;

    /// As store() for the files \a names only, which saveStatus() then tells of. editedFiles() knows which
    /// those are that an edit needs. Only while no exchange runs.
    void sendFiles(const QStringList &names);
    /// Lets the running save end, with storeDone(), behind the file that is being sent. The others stay
    /// missing in saveStatus().
    void stopSending();

    /// The names of the configuration files that a session with this interface description fetches, the
    /// description's own name included: its own list when it has one, otherwise the built-in list. Without
    /// the names that lead out of a folder or to a device on any system, such as "../net" or "nul".
    static QStringList fileNames(const QByteArray &description = {});

    /// The address of the recorder at \a host and any \a port, for the constructor. In an address the port is
    /// a signed 16-bit number, so 40000 is written as -25536. Empty when no address can hold the parts:
    /// without a host or with port 0, with a ":" in \a password or \a host (such as that of an IPv6 address),
    /// or with an "@" in \a host. \a password is what the recorder expects, mostly the MD5 digest of the
    /// typed one.
    static QString deviceAddress(const QString &login, const QString &password, const QString &host,
                                 quint16 port = DefaultPort);

    /// Who is asked for another login when the recorder refuses the one of the address. At first that is the
    /// user, in a modal dialog (nobody in a program without widgets). With nobody a refused login reports
    /// "Authorization failed".
    void setCredentialsSource(std::unique_ptr<paravue::CredentialsSource> source);

    /// How long an exchange waits for the recorder; zero is for ever. An exchange that has waited in vain
    /// fails like one whose connection was lost, as does one with a device that answers the login like no
    /// recorder.
    struct Timeouts {
        std::chrono::milliseconds connection{0}; ///< for the connection
        std::chrono::milliseconds answer{0};     ///< without a byte in either direction
    };
    /// Holds from the next exchange on. Without a call there are none.
    void setTimeouts(const Timeouts &timeouts) { m_timeouts = timeouts; }

    /// Fills in what is remembered of the recorder at \a record.url (level, login and password), without
    /// asking anybody; for an unknown recorder the default login with an empty password: "admin" when
    /// \a record.level is above 0, else "guest". The address for a store is then login:password\@url. Needs a
    /// QCoreApplication.
    static bool lookUpCredentials(paravue::Credentials &record);

protected:
    struct compcommand;

    /// Moves the cursor of the command list.
    virtual void commandNext();
    /// The command that the recorder is working on; to be called within the list only.
    virtual compcommand &commandCurrent();
    /// Did the list run to its end?
    virtual bool commandIsDone();
    virtual int commandCount();

protected Q_SLOTS:
    void connected();
    void readyRead();
    void disconnected();
    void error(QAbstractSocket::SocketError e);
    /// Sends the picture adjustments once the link is idle.
    void bcshTimer();

protected:
    using PushHandler = void (OrbNetSetup::*)(const QString &name, const QByteArray &data);

    /// A configuration file of the recorder, as built in.
    struct commands {
        const char *get_command; ///< request that fetches it
        const char *put_command; ///< request that sends it; null when the recorder does not accept it
        const char *name;        ///< of the local copy
        PushHandler push;        ///< what is done with the fetched content
    };
    static const commands mCommands[9];

    /// A command of the running exchange.
    struct compcommand {
        QByteArray get; ///< empty: nothing to fetch
        QByteArray put; ///< empty: nothing to send
        QByteArray name;
        PushHandler push = nullptr;
    };

    /// Starts an exchange; the command list and the operation are set by the caller.
    void _connect();
    /// True when the buffer holds a complete reply whose answer is OK; the buffer then holds its body only.
    bool _isDataReady();
    static QByteArray _to_cmdstring(const QString &text);
    /// Sends the next command that has something to send.
    void _transfer();

    void _push_file(const QString &name, const QByteArray &data);
    void _push_inifile(const QString &name, const QByteArray &data);
    void _push_gzfile(const QString &name, const QByteArray &data);
    void _push_statefile(const QString &name, const QByteArray &data);
    void _push_interfacefile(const QString &name, const QByteArray &data);

    /// Applies the directives of the state file \a name to its local copy. False when that goes beyond the
    /// limits or its text cannot be read and written whole; the file must then not be sent.
    bool _compile_state(const QString &name);
    /// Replaces the command list when the interface description \a name has one.
    void _overwrite_cmdlist(const QString &name);
    /// Deliberate: every file counts as changed, so that all of them are sent back.
    bool _isFileChanged(const QString &name) const;

    /// Runs one command with \a body, sent (\a send) or as the local file "tmp" that receives the reply.
    void _do_command(const QByteArray &command, const QByteArray &body, bool send);
    void _do_command(const QString &command, const QString &body, bool send);

    /// The link is Idle, then goes through the others; from FirstCommand on it is the cursor of the command
    /// list too.
    enum State { Idle, Connecting, LoginSent, LoggedIn, FirstCommand };
    enum Operation { NoOperation, Fetch, Send };

    int m_state = Idle;
    int m_operation = NoOperation;
    QTcpSocket *m_socket;
    std::unique_ptr<paravue::LocalFiles> m_temporaries;
    QByteArray m_buffer;
    std::vector<std::unique_ptr<compcommand>> m_cmdlist;
    QTimer *m_bcshTimer; ///< runs while the user adjusts the picture, and until the link is idle

private:
    void processReceived();
    void receive();
    bool acceptLogin();
    void noteAcceptance(const QString &words);
    void keepReply();
    void retryLogin();
    void askForLogin();
    bool isDefaultLogin();
    void reportWrongState(const char *where);
    void stopExchange(paravue::LinkStatus::Cause cause, const QString &reason);
    void abortLeftovers();
    void afterSocket(const std::function<void()> &handle);

    static FunctionUse useOfFunction(const QString &name, const QString &arg);
    void runCommand(const paravue::DeviceCommand &command,
                    const std::function<QString(const QString &)> &valueOf);
    void installPackage(const paravue::DeviceCommand &command, const QString &address);

    /// What a store fetches that reads only some files, as another store of the recorder has told it.
    struct PartialFetch {
        QByteArray description;
        std::optional<QStringList> only; ///< nothing: the files that a save sends
    };

    std::unique_ptr<OrbSetup> makeReader(const std::optional<QStringList> &only);
    void restrictFetch();
    void fillCommandList();
    void noteUnsentFiles();
    QByteArray requestOf(const compcommand &command) const;
    void startSave(const std::optional<QStringList> &only);
    void expectArrivals(const std::optional<QStringList> &only);
    void compileStates();
    void noteLocalProblem();
    void noteArrival(const QString &name);
    /// The file \a name was sent, or an answer has come when it is empty.
    void noteUnanswered(const QString &name);
    void noteReplacement(const QString &name);
    void dropLaterEdits(const QStringList &names);
    bool sendRequest(const compcommand &command);
    void leaveOut(compcommand &command);
    bool isKeptLocally(const QString &name);
    void finishExchange();
    void giveUpExchange();
    void showRunning();
    void showFailed(paravue::LinkStatus::Cause cause, const QString &problem);
    QString problemText(QAbstractSocket::SocketError error) const;
    void waitFor(std::chrono::milliseconds limit);
    void stopWaiting();
    void failWithoutAnswer();
    void noteWrongLoginReply();
    void cutConnection();
    void report(const QString &message, const QString &explanation);
    std::unique_ptr<compcommand> compiled(const paravue::ListedFile &file) const;
    void replaceCommandList(const QByteArray &description);
    std::optional<QByteArray> unpacked(const QByteArray &packed, const QString &name);
    bool keepLocalCopies(const QString &name, const QByteArray &data);
    void forgetValues(const QString &name);

    std::unique_ptr<paravue::ReplyFrame> m_reply;
    std::shared_ptr<paravue::CredentialsSource> m_credentialsSource;
    qsizetype m_received = 0; ///< bytes of the running exchange
    bool m_stopped = false;   ///< the running exchange has failed
    int m_exchange = 0;       ///< another number for each exchange, and after it was given up
    QSet<QString> m_notKept;  ///< files whose last copy could not be written
    QStringList m_notSent;    ///< files that the running save leaves out for want of a local copy
    bool m_isSaveIncomplete = false;
    bool m_isReceiving = false;     ///< within readyRead()
    bool m_isAsking = false;        ///< for another login
    int m_resets = 0;               ///< how often an exchange was given up
    int m_resetsBeforeQuestion = 0; ///< the value of m_resets when the exchange was refused that asks
    bool m_isLoginGiven = false;    ///< the user was asked and has answered
    Timeouts m_timeouts;
    std::optional<PartialFetch> m_partialFetch;
    std::unique_ptr<paravue::KnownFileList> m_fileList; ///< of the description that was met last
    QTimer *m_waiting; ///< runs while the exchange waits for the recorder, if there is a time-out
};
