#pragma once

#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

class OrbSetup;
class QWidget;

namespace paravue
{

struct Assignment;
class ControlContext;
class ValueOrigins;

/// What a description wants to do with a file of this computer.
enum class FileUse {
    Read, ///< the content may go to the recorder
    Write,
};

inline size_t qHash(FileUse use, size_t seed = 0)
{
    return ::qHash(int(use), seed);
}

/// Asks the user whether the file at \a path may be used so.
using PathQuestion = std::function<bool(const QString &path, FileUse use)>;

/// Who has written a value.
enum class ValueOrigin {
    Person,      ///< the user typed or chose it, or the host set it
    Description, ///< an action, a time task, the entry of a list
};

/// Guards the files of this computer, which a description refers to by the configuration address of a path. A
/// path that the user or the host has set there is used at once; for one that came from the recorder's files
/// or from the description itself the user is asked first.
class FileAccessGuard
{
public:
    FileAccessGuard(ControlContext &context, PathQuestion ask);

    void setQuestion(const PathQuestion &ask) { m_ask = ask; }

    /// \a assignment was just written into the store.
    void written(const Assignment &assignment, ValueOrigin origin);
    bool isTrusted(const QString &address);
    /// The path at \a address; nothing when the user does not permit this use of it.
    std::optional<QString> permitted(const QString &address, FileUse use);
    /// May a description call this slot? Installing a package sends a file of this computer.
    bool permitsCall(const QWidget &target, const QString &slot, const QString &param);

private:
    using Question = std::pair<QString, FileUse>;

    bool isOfRecorder(const QString &file);
    bool asksSuccessfully(const Question &question);

    ControlContext &m_context;
    PathQuestion m_ask;
    ValueOrigins *m_origins; ///< a part of the store
    bool m_isAsking = false;
    QSet<Question> m_allowed;
    QSet<Question> m_refusedToTasks;
};

} // namespace paravue
