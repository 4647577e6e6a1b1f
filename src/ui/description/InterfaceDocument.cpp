#include "ui/description/InterfaceDocument.h"

#include "store/XmlLimits.h"
#include "ui/base/WindowText.h"

#include <QFile>

#include <algorithm>

namespace paravue
{
namespace
{

const QString translationsTag = QStringLiteral("translations");

QString validate(const QDomDocument &document, const QString &path)
{
    const QDomElement root = document.documentElement();
    if (root.tagName() != QLatin1String("pvsetup"))
        return WindowText::tr("%1 is not an Paravue Setup config file.").arg(path);
    if (root.hasAttribute(QStringLiteral("version")) &&
        root.attribute(QStringLiteral("version")) != QLatin1String("1.0"))
        return WindowText::tr("%1 file version is not 1.0").arg(path);
    return {};
}

} // namespace

QString InterfaceDocument::read(const QString &path, QByteArray &text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return WindowText::tr("Cannot read file %1").arg(path);
    text = file.readAll();
    return {};
}

QString InterfaceDocument::load(const QString &path)
{
    QByteArray text;
    const QString fault = read(path, text);
    return fault.isEmpty() ? load(text, path) : fault;
}

QString InterfaceDocument::load(const QByteArray &text, const QString &path)
{
    // A streaming pass comes first: with entities and deep nesting QDomDocument can need gigabytes or
    // minutes.
    if (const auto violation = xmlLimitViolation(text))
        return QStringLiteral("%1: %2").arg(path, *violation);

    QDomDocument document;
    QString error;
    int line = 0;
    int column = 0;
    if (!document.setContent(text, false, &error, &line, &column))
        return WindowText::tr("%1:%2.%3\n%4")
            .arg(path, QString::number(line), QString::number(column), error);
    if (const QString fault = validate(document, path); !fault.isEmpty())
        return fault;

    m_document = document;
    m_elements.clear();
    m_translations.clear();
    for (QDomElement table = root().firstChildElement(translationsTag); !table.isNull();
         table = table.nextSiblingElement(translationsTag))
        indexTranslations(table);
    return {};
}

QString InterfaceDocument::translation(const QString &language, const QString &id) const
{
    const auto texts = m_translations.constFind(language);
    return texts == m_translations.constEnd() ? QString() : texts->value(id);
}

QList<QDomElement> InterfaceDocument::elements(const QString &tag) const
{
    if (m_elements.isEmpty() && !root().isNull())
        index(root());
    return m_elements.value(tag);
}

QDomElement InterfaceDocument::append(QDomElement parent, const QString &tag)
{
    QDomElement element = m_document.createElement(tag);
    parent.appendChild(element);
    return element;
}

void InterfaceDocument::index(const QDomElement &element) const
{
    m_elements[element.tagName()].append(element);
    const bool isRoot = element == root();
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const bool isTranslations = isRoot && child.tagName() == translationsTag;
        if (!isTranslations && !isDecoration(child.tagName()))
            index(child);
    }
}

void InterfaceDocument::indexTranslations(const QDomElement &translations)
{
    for (QDomElement language = translations.firstChildElement(); !language.isNull();
         language = language.nextSiblingElement()) {
        auto &texts = m_translations[language.tagName()];
        for (QDomElement text = language.firstChildElement(); !text.isNull();
             text = text.nextSiblingElement()) {
            if (!texts.contains(text.tagName()))
                texts.insert(text.tagName(), text.text());
        }
    }
}

bool isDecoration(const QString &tag)
{
    if (tag == QLatin1String("controlWidget"))
        return true;
    const QStringView number = QStringView(tag).mid(4);
    return tag.startsWith(QLatin1String("link")) && !number.isEmpty() &&
           std::all_of(number.begin(), number.end(), [](QChar c) { return c.isDigit(); });
}

QString ownText(const QDomElement &element)
{
    QString text;
    bool hasElements = false;
    for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling()) {
        if (node.isText() || node.isCDATASection())
            text += node.nodeValue();
        hasElements = hasElements || node.isElement();
    }
    return hasElements ? text.trimmed() : text;
}

QString addressText(const QDomElement &element)
{
    const QString text = element.text();
    return text.contains(u'\n') ? text.trimmed() : text;
}

QStringList childTexts(const QDomElement &element, const QString &tag)
{
    QStringList texts;
    for (QDomElement child = element.firstChildElement(tag); !child.isNull();
         child = child.nextSiblingElement(tag))
        texts.append(child.text());
    return texts;
}

QStringList childAddresses(const QDomElement &element, const QString &tag)
{
    QStringList addresses;
    for (QDomElement child = element.firstChildElement(tag); !child.isNull();
         child = child.nextSiblingElement(tag))
        addresses.append(addressText(child));
    return addresses;
}

QString firstAddress(const QDomElement &element)
{
    return addressText(element.firstChildElement(QStringLiteral("key")));
}

int intAttribute(const QDomElement &element, const QString &name)
{
    return element.attribute(name).toInt();
}

} // namespace paravue
