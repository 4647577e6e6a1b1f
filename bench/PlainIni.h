#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The peer of OrbSettings: an ini file as one would parse and write it by hand who knows that every line is
/// well formed. It keeps views into the text and finds keys through a hash of its own; it takes ASCII only.
class PlainIni
{
public:
    explicit PlainIni(const std::string &path);

    /// Null when the file has no such key.
    const std::string_view *value(std::string_view section, std::string_view name) const;
    /// \a value must live until the file is written.
    void setValue(std::string_view section, std::string_view name, std::string_view value);
    /// Every key in its usual form, all other lines as they are.
    void write(const std::string &path) const;

private:
    struct Key {
        std::string_view section;
        std::string_view name;
        std::string_view value;
        size_t line; ///< where its line begins
        size_t end;
    };

    size_t slotOf(std::string_view section, std::string_view name) const;

    std::string m_text;
    std::vector<Key> m_keys;
    std::vector<uint32_t> m_slots; ///< number of a key and 1, or 0; their number is a power of two
};
