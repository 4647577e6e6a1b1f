#pragma once

#include "store/IniEntries.h"
#include "store/IniText.h"

#include <optional>
#include <vector>

/// The usual case of writing a file, for which IniMerge is the general one: every key of the file has one
/// line of its own under the one header of its section, which its value goes to whatever becomes of other
/// lines. Then the order in which these keys are put does not matter, and neither names nor values have to be
/// looked up or sorted.
namespace paravue
{

/// For each marked line of a text the number of the entry that was taken from it; of no meaning for headers.
using EntriesOfLines = std::vector<quint32>;

/// Whether that is the case as far as the text shows. \a keysInFile is the number of entries that were found
/// in the file.
bool everyKeyOwnsOneLine(const IniText &text, qsizetype keysInFile, bool sectioned);

struct OwnLines {
    IniText text;
    /// The entries whose written lines are no key lines, as their values hold a single quote or a line feed.
    /// New keys are put behind the key lines of the moment, so these take their turn among them.
    std::vector<const IniEntries::Entry *> spoiling;
};

/// The text with the lines of all entries in their usual form; those of the spoiling ones are as they were
/// when \a hasNewKeys. Nothing when a line could become a header.
std::optional<OwnLines> rewriteOwnLines(const IniText &text, const EntriesOfLines &entriesOfLines,
                                        const IniEntries &entries, bool hasNewKeys);

/// Whether the lines of the new entry \a entry could read as something else than a key of its section, such
/// as another header.
bool mayDisturb(const IniEntries::Entry &entry, const IniText &text);

} // namespace paravue
