#include "capi/CallGuard.h"
#include "capi/StoreRecord.h"
#include "capi/Texts.h"
#include "capi/WindowRecord.h"
#include "capi/paravue.h"
#include "check/DescriptionCheck.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <limits>

using namespace paravue;
using namespace paravue::capi;

namespace
{

/// Who is told of the problems.
struct ProblemReceiver {
    paravue_problem_callback callback;
    void *user;
    size_t *errors;
    size_t *warnings;
};

paravue_result report(Library &library, const QList<DescriptionProblem> &problems,
                      const ProblemReceiver &receiver)
{
    size_t errors = 0;
    for (const DescriptionProblem &problem : problems) {
        const bool isError = problem.severity == DescriptionProblem::Severity::Error;
        errors += isError ? 1 : 0;
        if (!receiver.callback)
            continue;
        const Library::Scope scope(Library::Scope::Kind::Callback);
        const QByteArray text = problem.text.simplified().toUtf8();
        const paravue_description_problem told{sizeof(told),   isError,          problem.line,
                                               problem.column, text.constData(), size_t(text.size())};
        receiver.callback(receiver.user, &told);
    }
    if (receiver.errors)
        *receiver.errors = errors;
    if (receiver.warnings)
        *receiver.warnings = size_t(problems.size()) - errors;
    return errors == 0 ? PARAVUE_OK : library.fail(PARAVUE_BAD_DATA);
}

/// Checks \a description; one that cannot be read is no description with errors.
paravue_result check(Library &library, QIODevice &description, const QString &name,
                     const std::optional<QString> &folder, const ProblemReceiver &receiver)
{
    if (receiver.errors)
        *receiver.errors = 0;
    if (receiver.warnings)
        *receiver.warnings = 0;
    if (!folder)
        return library.fail(PARAVUE_WRONG_USE);
    if (!folder->isEmpty() && !QFileInfo(*folder).isDir())
        return library.fail(PARAVUE_LOCAL_FILE,
                            QCoreApplication::translate("CInterface", "%1 is no folder").arg(*folder));
    if (!description.open(QIODevice::ReadOnly))
        return library.fail(PARAVUE_LOCAL_FILE,
                            QCoreApplication::translate("CInterface", "%1 cannot be read: %2")
                                .arg(name, description.errorString()));
    return report(library, checkDescription(description, name, *folder), receiver);
}

} // namespace

paravue_result paravue_check_description(const char *path, size_t path_length, const char *folder,
                                         size_t folder_length, paravue_problem_callback callback, void *user,
                                         size_t *errors, size_t *warnings)
{
    return guarded([&](Library &library) {
        const QString pathText = readText(path, path_length).value_or(QString());
        if (pathText.isEmpty())
            return library.fail(PARAVUE_WRONG_USE);
        QFile file(pathText);
        return check(library, file, pathText, readOptionalText(folder, folder_length),
                     {callback, user, errors, warnings});
    });
}

paravue_result paravue_check_description_data(const void *data, size_t data_length, const char *folder,
                                              size_t folder_length, paravue_problem_callback callback,
                                              void *user, size_t *errors, size_t *warnings)
{
    return guarded([&](Library &library) {
        if (!data || data_length > size_t(std::numeric_limits<int>::max()))
            return library.fail(PARAVUE_WRONG_USE);
        QByteArray bytes = QByteArray::fromRawData(static_cast<const char *>(data), qsizetype(data_length));
        QBuffer buffer(&bytes);
        return check(library, buffer, QStringLiteral("<memory>"), readOptionalText(folder, folder_length),
                     {callback, user, errors, warnings});
    });
}
