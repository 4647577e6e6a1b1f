#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

namespace paravue
{

/// How a store and its recorder get on, for windows and hosts that show it. A purely local store is always
/// idle.
struct LinkStatus {
    enum class State {
        Idle,    ///< no exchange runs, and the next one can start
        Running, ///< an exchange runs, or the user is asked for the login of one
        Failed,  ///< an exchange has failed and stays where it is, until store() or resetLink()
    };

    enum class Cause {
        None,
        Network,   ///< there is no connection, or it was lost
        NoAnswer,  ///< the recorder was silent for longer than the host allows
        Login,     ///< the recorder has refused the login
        Refused,   ///< the recorder has answered a command with an error
        BadAnswer, ///< what was received is no answer of a recorder
        LocalFile, ///< a file on this computer could not be written or read; the link itself is in order
    };

    State state = State::Idle;
    /// Why the last exchange has failed, in plain words for the user (translated); empty otherwise.
    QString problem = {};
    /// Started when something was last sent or received; valid while an exchange runs, and not while the user
    /// is asked for a login.
    QElapsedTimer lastTraffic = {};
    /// The exchange that runs sends something: files, or a function that is no report.
    bool isSending = false;
    /// What kind of problem it is, for programs.
    Cause cause = Cause::None;
};

/// The files of the last save. A save that is over has either no missing and no replaced files or has failed.
struct SaveStatus {
    QStringList arrived; ///< confirmed by the recorder, in the order of sending
    QStringList missing;
    /// The one of the missing files that was sent and not answered: the recorder may have it. Empty without.
    QString unanswered = {};
    QStringList replaced; ///< were missing when they were fetched anew, so that their edits are gone
};

} // namespace paravue
