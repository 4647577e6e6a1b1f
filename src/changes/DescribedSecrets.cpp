#include "changes/DescribedSecrets.h"

#include "store/OrbSetup.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace paravue
{

namespace
{

bool isMarked(const QXmlStreamAttributes &attributes)
{
    return isMarkedSecret(attributes.value(QLatin1StringView("password")),
                          attributes.value(QLatin1StringView("secret")));
}

bool holdsAddress(QStringView tag)
{
    return tag == QLatin1StringView("key") || tag == QLatin1StringView("value");
}

} // namespace

bool isMarkedSecret(QStringView password, QStringView secret)
{
    return password == QLatin1StringView("on") || secret == QLatin1StringView("yes");
}

namespace
{

/// The paths of the values in the marked elements that \a xml has from here on; of the first element only,
/// with all that is in it, when \a isOneElement is set.
QStringList secretsIn(QXmlStreamReader &xml, bool isOneElement)
{
    QStringList paths;
    std::vector<bool> isSecret; // of the elements around
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement && !isSecret.empty()) {
            isSecret.pop_back();
            if (isOneElement && isSecret.empty())
                break;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        const bool isWithin = !isSecret.empty() && isSecret.back();
        if (isWithin && holdsAddress(xml.name())) {
            paths << OrbSetup::path(xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed());
            continue;
        }
        const bool isMarkedHere = isMarked(xml.attributes());
        if (isOneElement && isSecret.empty() && !isMarkedHere)
            break;
        // The keys of choices stand within their texts.
        isSecret.push_back(isMarkedHere || (isWithin && xml.name() == QLatin1StringView("text")));
    }
    return paths;
}

/// Whether parts of \a description can be read on their own: other encodings than UTF-8, and entities of its
/// own, are declared at its beginning.
bool hasReadableParts(const QByteArray &description)
{
    const QByteArray head =
        description.first(std::max<qsizetype>(description.indexOf("<pvsetup"), 0)).toLower();
    return !head.isEmpty() && !head.contains("<!doctype") && !description.contains('\0') &&
           (!head.contains("encoding") || head.contains("utf-8"));
}

/// Every attribute has a "=", before any ">" that stands in its value.
bool hasAttributes(QByteArrayView fromTag)
{
    return fromTag.first(std::max<qsizetype>(fromTag.indexOf('>'), 0)).contains('=');
}

/// The positions of the start tags with attributes in which \a word stands, as one of these or otherwise.
std::vector<qsizetype> markedTags(QByteArrayView description, std::string_view word)
{
    const std::boyer_moore_horspool_searcher search(word.begin(), word.end());
    std::vector<qsizetype> tags;
    const auto begin = description.begin();
    for (auto before = begin, found = std::search(begin, description.end(), search);
         found != description.end();
         before = found, found = std::search(found + 1, description.end(), search)) {
        // No attribute holds a "<".
        const QByteArrayView between(before, found);
        const qsizetype tag = between.lastIndexOf('<');
        const QByteArrayView fromTag(before + std::max<qsizetype>(tag, 0), description.end());
        if (tag >= 0 && !QByteArrayView("/!?").contains(fromTag[1]) && hasAttributes(fromTag))
            tags.push_back(fromTag.begin() - begin);
    }
    return tags;
}

/// Reading a whole description takes longer than fetching it, so only elements with the word of a mark in
/// their tags are read, each on its own. Nothing when that cannot tell the secrets of this document.
std::optional<QStringList> secretsInMarkedElements(const QByteArray &description)
{
    constexpr qsizetype UsualSize = 2048;
    constexpr int MostLarge = 16; // each is read to the end of the document
    if (!hasReadableParts(description))
        return {};
    QStringList paths;
    int large = 0;
    for (const std::string_view word : {"password", "secret"}) {
        for (const qsizetype tag : markedTags(description, word)) {
            const QByteArrayView rest = QByteArrayView(description).sliced(tag);
            const QByteArrayView part = rest.first(std::min(UsualSize, rest.size()));
            // Not in the middle of a letter.
            for (QByteArrayView text = part.first(part.lastIndexOf('>') + 1);; text = rest) {
                QXmlStreamReader xml(QByteArray::fromRawData(text.data(), text.size()));
                const QStringList found = secretsIn(xml, true);
                if (!xml.hasError()) {
                    paths << found;
                    break;
                }
                const bool isCut = xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
                if (!isCut || text.size() == rest.size() || ++large > MostLarge)
                    return {};
            }
        }
    }
    return paths;
}

} // namespace

QStringList describedSecrets(const QByteArray &description)
{
    QStringList paths;
    if (const auto found = secretsInMarkedElements(description)) {
        paths = *found;
    } else {
        QXmlStreamReader xml(description);
        paths = secretsIn(xml, false);
    }
    paths.removeDuplicates();
    return paths;
}

} // namespace paravue
