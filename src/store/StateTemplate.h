#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace paravue
{

/// By how much the directives of a state file may lengthen it, in characters.
inline constexpr qsizetype MaxStateGrowth = 16 * 1024 * 1024;
/// What the directives of a state file may read through, in characters, all passes over the text together.
inline constexpr qsizetype MaxStateWork = 256 * 1024 * 1024;

/// The value of a configuration address; nothing leaves out the directive that asks for it.
using ValueLookup = std::function<std::optional<QString>(const QString &address)>;

/// A state file after its directives; \a text is empty unless \a fault is None.
struct CompiledState {
    enum class Fault {
        None,
        TooLarge, ///< the directives lengthen the text beyond the limit
        TooSlow,  ///< the directives take more work or time than allowed
    };

    Fault fault = Fault::None;
    QString text = {};
};

/// Applies the directives of a state file and returns the text that goes to the recorder.
///
/// A directive is a line "#!s/pattern/prefix{address}suffix/": every match of the pattern, anywhere in the
/// text, becomes prefix, value of the address, suffix. Repetitions in the pattern take as little as they can;
/// what is put in is taken literally. Directives run in the order of the text, each one on what the ones
/// before it made of it, and stay in the text. The parts end at the first "/", "{", "}" and the first "/" at
/// the end of a line that follow, wherever these stand, also in later lines.
///
/// The text may grow by \a maximumGrowth characters. Within the limit on work above, and the time that
/// patterns may take.
CompiledState applyStateDirectives(const QString &text, const ValueLookup &valueOf,
                                   qsizetype maximumGrowth = MaxStateGrowth);

} // namespace paravue
