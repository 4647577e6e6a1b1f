// Requires that the check of a description finds the same problems each time, in the order of their places,
// and that it refuses exactly what the window does not read.
//
// Input: the description, packed or not; then pieces "name", line feed and content, each a configuration
// file.

#include "FuzzInput.h"
#include "InputFolder.h"
#include "InputTime.h"
#include "Require.h"

#include "check/DescriptionCheck.h"
#include "ui/description/InterfaceDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>

#include <utility>

using namespace paravue;
using namespace paravue::fuzz;
using Severity = DescriptionProblem::Severity;

namespace
{

/// A name that is none for a file of the folder is left out.
void writeFile(const InputFolder &folder, const QByteArray &piece)
{
    const qsizetype lineFeed = piece.indexOf('\n');
    const QString name = QString::fromLatin1(piece.first(qMax<qsizetype>(lineFeed, 0)));
    const bool isPlain = std::all_of(name.begin(), name.end(), [](QChar c) { return c.isLetterOrNumber(); });
    if (!name.isEmpty() && name.size() < 100 && isPlain)
        folder.write(name, piece.sliced(lineFeed + 1));
}

QString lineOf(const DescriptionProblem &problem)
{
    return QString("%1:%2 %3 %4")
        .arg(problem.line)
        .arg(problem.column)
        .arg(problem.severity == Severity::Error ? "error" : "warning", problem.text);
}

QStringList checkProblems(const QList<DescriptionProblem> &problems, qsizetype lines)
{
    QStringList texts;
    std::pair<int, int> last{0, 0};
    for (const DescriptionProblem &problem : problems) {
        const std::pair<int, int> place{problem.line, problem.column};
        require(!problem.text.isEmpty(), "a problem has a text");
        require(place >= last, "problems come in the order of their places");
        require(problem.line >= 0 && problem.line <= lines && problem.column >= 0, "a place is in the text");
        last = place;
        texts << lineOf(problem);
    }
    return texts;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    QLoggingCategory::setFilterRules("paravue.*=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<QByteArray> pieces = FuzzInput(data, size).pieces();
    const InputFolder folder;
    const QString file = folder.write("described.xml", pieces.first());
    const InputFolder configuration;
    for (const QByteArray &piece : pieces.sliced(1))
        writeFile(configuration, piece);
    const auto text = unpackedDescription(pieces.first());
    // Line ends are LF, CR, or both, and there may be two bytes for each.
    const qsizetype lines = text ? text->count('\n') + text->count('\r') + 1 : 0;

    const InputTime time;
    const auto problems = checkDescription(file, configuration.path());
    const QStringList listed = checkProblems(problems, lines);
    require(checkProblems(checkDescription(file, configuration.path()), lines) == listed,
            "the same problems are found again");
    checkProblems(checkDescription(file), lines);
    if (!text || !InterfaceDocument().load(*text, file).isEmpty())
        require(problems.size() == 1 && problems.first().severity == Severity::Error,
                "what is not read has one problem");
    return 0;
}
