#include "CheckReport.h"

#include "CommandLine.h"
#include "ProgramLog.h"

#include "check/DescriptionCheck.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>

namespace paravue
{

namespace
{

class ReportText
{
    Q_DECLARE_TR_FUNCTIONS(CheckReport)
};

const QString StandardInput = QStringLiteral("-");
// As compilers name it.
const QString InputName = QStringLiteral("<stdin>");

/// The words of the output are for other programs too, and are not translated.
QString wordFor(DescriptionProblem::Severity severity)
{
    return severity == DescriptionProblem::Severity::Error ? QStringLiteral("error")
                                                           : QStringLiteral("warning");
}

qsizetype countOf(const QList<DescriptionProblem> &problems, DescriptionProblem::Severity severity)
{
    return std::count_if(problems.cbegin(), problems.cend(), [severity](const DescriptionProblem &problem) {
        return problem.severity == severity;
    });
}

/// One line for each problem, in the form in which compilers report theirs.
void printLines(QTextStream &out, const QString &file, const QList<DescriptionProblem> &problems)
{
    for (const DescriptionProblem &problem : problems) {
        out << file << ':';
        if (problem.line > 0)
            out << problem.line << ':' << problem.column << ':';
        out << ' ' << wordFor(problem.severity) << ": " << problem.text.simplified() << '\n';
    }
    out << file << ": "
        << ReportText::tr("errors: %1, warnings: %2")
               .arg(countOf(problems, DescriptionProblem::Severity::Error))
               .arg(countOf(problems, DescriptionProblem::Severity::Warning))
        << '\n';
}

void printJson(QTextStream &out, const QString &file, const QList<DescriptionProblem> &problems)
{
    QJsonArray list;
    for (const DescriptionProblem &problem : problems)
        list.append(QJsonObject{{"severity", wordFor(problem.severity)},
                                {"line", problem.line},
                                {"column", problem.column},
                                {"text", problem.text}});
    const QJsonObject report{{"file", file},
                             {"errors", countOf(problems, DescriptionProblem::Severity::Error)},
                             {"warnings", countOf(problems, DescriptionProblem::Severity::Warning)},
                             {"problems", list}};
    out << QJsonDocument(report).toJson();
}

/// The problems of the description at \a path, or of that on standard input.
QList<DescriptionProblem> problemsOf(const QString &path, const QString &folder)
{
    if (path != StandardInput)
        return checkDescription(path, folder);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return {{DescriptionProblem::Severity::Error, 0, 0, input.errorString()}};
    return checkDescription(input, InputName, folder);
}

/// That of a file that cannot be read is not one of the description.
QString readingProblem(const QString &path)
{
    QFile file(path);
    if (path == StandardInput || file.open(QIODevice::ReadOnly))
        return {};
    return ReportText::tr("%1 cannot be read: %2").arg(path, file.errorString());
}

} // namespace

ExitCode runCheck(const CommandLine &commandLine)
{
    const QString folder = commandLine.filesFolder;
    if (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
        ProgramLog::tellFailure(ReportText::tr("%1 is no folder").arg(folder));
        return ExitCode::LocalFile;
    }
    if (const QString problem = readingProblem(commandLine.description); !problem.isEmpty()) {
        ProgramLog::tellFailure(problem);
        return ExitCode::LocalFile;
    }
    const QList<DescriptionProblem> problems = problemsOf(commandLine.description, folder);
    const QString name = commandLine.description == StandardInput ? InputName : commandLine.description;
    QTextStream out(stdout);
    if (commandLine.json)
        printJson(out, name, problems);
    else
        printLines(out, name, problems);
    const bool isClean = countOf(problems, DescriptionProblem::Severity::Error) == 0;
    return isClean ? ExitCode::Done : ExitCode::Rejected;
}

} // namespace paravue
