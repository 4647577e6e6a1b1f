// Requires that the directives of a state file, and every pattern of a recorder, end in time and within their
// limits, and that the ways to apply a pattern agree.
//
// Input: the state file; then pieces, the values by the addresses "0", "1" and so on. The first value is a
// pattern as well, and the second one the text for it.

#include "FuzzInput.h"
#include "InputTime.h"
#include "Require.h"

#include "store/StateTemplate.h"
#include "store/TextPattern.h"

#include <QLoggingCategory>

using namespace paravue;
using namespace paravue::fuzz;

namespace
{

constexpr qsizetype MaxReplaced = 1'000'000;

void checkState(const QString &text, const QList<QByteArray> &values)
{
    const CompiledState compiled = applyStateDirectives(
        text, [&values](const QString &address) { return QString::fromUtf8(values.value(address.toInt())); });
    if (compiled.fault != CompiledState::Fault::None) {
        require(compiled.text.isNull(), "a text beyond the limits is dropped");
        return;
    }
    require(compiled.text.size() <= text.size() + MaxStateGrowth,
            "directives lengthen a text within the limit");
    require(compiled.text == text || text.contains(u"#!"), "without directives a text stays as it is");
}

void checkMatch(const TextPattern::Match &match, const QString &text)
{
    require(match.start >= 0 && match.length >= 0 && match.start + match.length <= text.size(),
            "a match stands in its text");
    require(match.captures.value(0) == QStringView(text).sliced(match.start, match.length),
            "a match begins with the whole of it");
}

void checkPattern(const QString &expression, const QString &text, TextPattern::Greed greed)
{
    const PatternBudget budget;
    const auto pattern = TextPattern::ofRecorder(expression, greed);
    if (!TextPattern::fault(expression).isEmpty())
        require(!pattern.isUsable(), "a pattern with a fault is not used");
    const bool matches = pattern.matchesWhole(text);
    const auto whole = pattern.matchWhole(text);
    const auto found = pattern.find(text);
    const bool mayMatch = pattern.matchesBeginning(text);
    const auto replaced = pattern.replaceAll(text, "{}", MaxReplaced);
    require(!replaced || replaced->size() <= MaxReplaced, "a replaced text is within its limit");
    if (found)
        checkMatch(*found, text);
    if (whole) {
        checkMatch(*whole, text);
        require(whole->length == text.size(), "a match of the whole text is as long");
    }
    if (!pattern.isUsable() || budget.isExhausted())
        return; // given up on the way
    require(matches == whole.has_value(), "both ways to match the whole text agree");
    require(!matches || mayMatch, "what matches is the beginning of a match");
    if (!found && replaced)
        require(*replaced == text, "without a match nothing is replaced");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    QLoggingCategory::setFilterRules("paravue.pattern=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<QByteArray> pieces = FuzzInput(data, size).pieces();
    const QList<QByteArray> values = pieces.sliced(1);
    {
        const InputTime time;
        checkState(QString::fromUtf8(pieces.first()), values);
    }
    const InputTime time;
    const QString pattern = QString::fromUtf8(values.value(0));
    const QString text = QString::fromUtf8(values.value(1));
    checkPattern(pattern, text, TextPattern::Greed::Greedy);
    checkPattern(pattern, text, TextPattern::Greed::Minimal);
    return 0;
}
