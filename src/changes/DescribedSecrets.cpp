#include "changes/DescribedSecrets.h"

#include "store/OrbSetup.h"

#include <QXmlStreamReader>

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

QStringList describedSecrets(const QByteArray &description)
{
    QStringList paths;
    QXmlStreamReader xml(description);
    std::vector<bool> isSecret; // of the elements around
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement && !isSecret.empty())
            isSecret.pop_back();
        if (token != QXmlStreamReader::StartElement)
            continue;
        const bool isWithin = !isSecret.empty() && isSecret.back();
        if (isWithin && holdsAddress(xml.name()))
            paths << OrbSetup::path(xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed());
        else
            // The keys of choices stand within their texts.
            isSecret.push_back(isMarked(xml.attributes()) ||
                               (isWithin && xml.name() == QLatin1StringView("text")));
    }
    return paths;
}

} // namespace paravue
