#pragma once

#include "store/IniEntries.h"
#include "store/IniText.h"

#include <optional>
#include <vector>

/// The usual case of writing a file, for which IniMerge is the general one: every key of the file has one
/// line of its own under the one header of its section, and still has it when all are written. Then the order
/// in which keys are put does not matter, and neither names nor values have to be looked up or sorted.
namespace paravue
{

/// For each marked line of a text the number of the entry that was taken from it; of no meaning for headers.
using EntriesOfLines = std::vector<quint32>;

/// Whether that is the case as far as the text shows. \a keysInFile is the number of entries that were found
/// in the file.
bool everyKeyOwnsOneLine(const IniText &text, qsizetype keysInFile, bool sectioned);

/// The text with the lines of all entries in their usual form. Nothing when a line would cease to be that of
/// its key.
std::optional<IniText> rewriteOwnLines(const IniText &text, const EntriesOfLines &entriesOfLines,
                                       const IniEntries &entries);

/// Whether the lines of the new entry \a entry could read as something else than a key of its section, such
/// as another header.
bool mayDisturb(const IniEntries::Entry &entry);

} // namespace paravue
