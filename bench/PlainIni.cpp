#include "PlainIni.h"

#include <bit>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>

namespace
{

using File = std::unique_ptr<FILE, int (*)(FILE *)>;

std::string_view trimmed(std::string_view text)
{
    const size_t begin = text.find_first_not_of(" \t\r\n");
    return begin == text.npos ? std::string_view()
                              : text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

bool isInteger(std::string_view value)
{
    int number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    const bool hasZero = value.size() > 1 && value[value[0] == '-'] == '0';
    return error == std::errc() && end == value.data() + value.size() && !hasZero;
}

} // namespace

PlainIni::PlainIni(const std::string &path)
{
    const File file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::fseek(file.get(), 0, SEEK_END);
    m_text.resize(size_t(std::ftell(file.get())));
    std::rewind(file.get());
    m_text.resize(std::fread(m_text.data(), 1, m_text.size(), file.get()));

    std::string_view section = "untitled";
    for (size_t begin = 0, end = 0; begin < m_text.size(); begin = end) {
        const void *lineFeed = std::memchr(m_text.data() + begin, '\n', m_text.size() - begin);
        end = lineFeed ? size_t(static_cast<const char *>(lineFeed) - m_text.data() + 1) : m_text.size();
        const std::string_view line = trimmed(std::string_view(m_text).substr(begin, end - begin));
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[') {
            section = trimmed(line.substr(1, line.find(']') - 1));
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == line.npos)
            continue;
        std::string_view value = trimmed(line.substr(equals + 1));
        if (value.size() > 1 && (value[0] == '\'' || value[0] == '"'))
            value = value.substr(1, value.size() - 2);
        m_keys.push_back({section, trimmed(line.substr(0, equals)), value, begin, end});
    }
    m_slots.resize(std::bit_ceil(2 * m_keys.size() + 2));
    for (size_t i = 0; i < m_keys.size(); ++i)
        m_slots[slotOf(m_keys[i].section, m_keys[i].name)] = uint32_t(i + 1);
}

size_t PlainIni::slotOf(std::string_view section, std::string_view name) const
{
    const std::hash<std::string_view> hash;
    const size_t mask = m_slots.size() - 1;
    size_t slot = (hash(section) * 31 + hash(name)) & mask;
    while (m_slots[slot] != 0) {
        const Key &key = m_keys[m_slots[slot] - 1];
        if (key.name == name && key.section == section)
            break;
        slot = (slot + 1) & mask;
    }
    return slot;
}

const std::string_view *PlainIni::value(std::string_view section, std::string_view name) const
{
    const uint32_t found = m_slots[slotOf(section, name)];
    return found == 0 ? nullptr : &m_keys[found - 1].value;
}

void PlainIni::setValue(std::string_view section, std::string_view name, std::string_view value)
{
    if (const uint32_t found = m_slots[slotOf(section, name)])
        m_keys[found - 1].value = value;
}

void PlainIni::write(const std::string &path) const
{
    std::string text;
    text.reserve(m_text.size() + 4 * m_keys.size());
    size_t copied = 0;
    for (const Key &key : m_keys) {
        text.append(m_text, copied, key.line - copied);
        copied = key.end;
        const char *quote = key.value.empty() || isInteger(key.value) ? "" : "'";
        text.append(key.name).append(" = ").append(quote).append(key.value).append(quote).append("\r\n");
    }
    text.append(m_text, copied);
    const File file(std::fopen((path + ".new").c_str(), "wb"), std::fclose);
    if (!file || std::fwrite(text.data(), 1, text.size(), file.get()) != text.size() ||
        std::fflush(file.get()) != 0 || std::rename((path + ".new").c_str(), path.c_str()) != 0)
        throw std::runtime_error("cannot write " + path);
}
