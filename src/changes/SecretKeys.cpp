#include "changes/SecretKeys.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <string_view>

namespace paravue
{

namespace
{

constexpr int DotCount = 8;

/// Letters that are no ASCII when case does not count become one that no word has.
QVarLengthArray<char, 128> folded(QStringView text)
{
    constexpr char16_t FirstBeyondAscii = 0x80;
    QVarLengthArray<char, 128> letters(text.size());
    std::transform(text.begin(), text.end(), letters.begin(), [](QChar letter) {
        const char16_t small = letter.toCaseFolded().unicode();
        return small < FirstBeyondAscii ? char(small) : '\0';
    });
    return letters;
}

bool hasSecretName(QStringView path)
{
    static constexpr std::array<std::string_view, 6> Words{"pass",  "pwd", "secret",
                                                           "token", "key", "community"};
    // Names from a file, which no address can hold, may have more of "/".
    const qsizetype section = path.indexOf(u'/') + 1;
    // Configurations have 100,000 keys, so each is folded once for all words.
    const auto letters = folded(path.sliced(path.indexOf(u'/', section) + 1));
    const std::string_view key(letters.data(), size_t(letters.size()));
    return std::any_of(Words.begin(), Words.end(),
                       [key](std::string_view word) { return key.find(word) != std::string_view::npos; });
}

} // namespace

bool SecretKeys::contains(QStringView path) const
{
    if (const auto source = std::exchange(m_source, {})) {
        for (const QString &marked : source())
            m_marked.insert(marked);
    }
    return isKnown(path);
}

bool SecretKeys::isKnown(QStringView path) const
{
    return hasSecretName(path) || (!m_marked.isEmpty() && m_marked.contains(path.toString()));
}

QString SecretKeys::dots()
{
    return QString(DotCount, QChar(0x2022));
}

} // namespace paravue
