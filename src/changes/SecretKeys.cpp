#include "changes/SecretKeys.h"

#include <algorithm>
#include <array>

namespace paravue
{

namespace
{

constexpr int DotCount = 8;

bool hasSecretName(QStringView path)
{
    static constexpr std::array<QLatin1StringView, 6> Words{
        QLatin1StringView("PASS"),  QLatin1StringView("PWD"), QLatin1StringView("SECRET"),
        QLatin1StringView("TOKEN"), QLatin1StringView("KEY"), QLatin1StringView("COMMUNITY")};
    // Names from a file, which no address can hold, may have more of "/".
    const qsizetype section = path.indexOf(u'/') + 1;
    const QStringView key = path.sliced(path.indexOf(u'/', section) + 1);
    return std::any_of(Words.begin(), Words.end(),
                       [key](QLatin1StringView word) { return key.contains(word, Qt::CaseInsensitive); });
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
