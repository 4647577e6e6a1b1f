#include "check/DescriptionSchema.h"

#include "check/ElementNames.h"
#include "check/Vocabulary.h"
#include "ui/page/GridCell.h"

#include <QXmlStreamWriter>

namespace paravue
{
namespace
{

const QString gridType = QStringLiteral("gridlayout");
const QString cellName = QStringLiteral("cell");
const QString pageGridName = QStringLiteral("page.grid");
const QString tagName = QStringLiteral("tag");

QString definitionOf(const QString &element)
{
    return QStringLiteral("element.") + element;
}

QString definitionOfItem(const QString &type)
{
    return QStringLiteral("item.") + type;
}

class SchemaWriter
{
public:
    QByteArray write()
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(2);
        m_xml.writeStartDocument();
        m_xml.writeStartElement("grammar");
        m_xml.writeDefaultNamespace("http://relaxng.org/ns/structure/1.0");
        m_xml.writeAttribute("datatypeLibrary", "http://www.w3.org/2001/XMLSchema-datatypes");
        within("start", [&] { ref(definitionOf("pvsetup")); });
        for (const ElementRule &rule : m_words.elements()) {
            if (rule.tag != QLatin1String("translations"))
                define(definitionOf(rule.tag), [&] { element(rule); });
        }
        for (const QString &type : m_words.itemTypes())
            define(definitionOfItem(type), [&] { item(type); });
        define(cellName, [&] { element(itemTag, [&] { anyItem(); }); });
        define(pageGridName, [&] { element(itemTag, [&] { ref(definitionOfItem(gridType)); }); });
        define(definitionOf("translations"), [&] { translations(); });
        define(tagName, [&] { tag(); });
        m_xml.writeEndDocument();
        return m_text;
    }

private:
    template <class Content>
    void within(const char *name, Content content)
    {
        m_xml.writeStartElement(name);
        content();
        m_xml.writeEndElement();
    }

    template <class Content>
    void named(const char *tag, const QString &name, Content content)
    {
        within(tag, [&] {
            m_xml.writeAttribute("name", name);
            content();
        });
    }

    template <class Content>
    void define(const QString &name, Content content)
    {
        named("define", name, content);
    }

    template <class Content>
    void element(const QString &name, Content content)
    {
        named("element", name, content);
    }

    void ref(const QString &name)
    {
        m_xml.writeEmptyElement("ref");
        m_xml.writeAttribute("name", name);
    }

    void anyItem()
    {
        within("choice", [&] {
            for (const QString &type : m_words.itemTypes())
                ref(definitionOfItem(type));
        });
    }

    /// Text and children in any order; any element may be a tag.
    void content(const QStringList &definitions)
    {
        within("zeroOrMore", [&] {
            within("choice", [&] {
                m_xml.writeEmptyElement("text");
                for (const QString &definition : definitions)
                    ref(definition);
                ref(tagName);
            });
        });
    }

    QStringList definitionsOf(const ElementRule &rule, const QString &itemDefinition) const
    {
        QStringList names;
        for (const QString &child : rule.children)
            names.append(child == itemTag ? itemDefinition : definitionOf(child));
        return names;
    }

    void element(const ElementRule &rule)
    {
        element(rule.tag, [&] {
            attributes(rule.attributes);
            // A page holds grids only.
            content(definitionsOf(rule, pageGridName));
        });
    }

    void item(const QString &type)
    {
        const ElementRule &rule = m_words.item(type);
        within("group", [&] {
            m_xml.writeStartElement("attribute");
            m_xml.writeAttribute("name", "type");
            m_xml.writeTextElement("value", type);
            m_xml.writeEndElement();
            attributes(rule.attributes);
            content(definitionsOf(rule, cellName));
        });
    }

    void attributes(const QList<AttributeRule> &rules)
    {
        for (const AttributeRule &rule : rules) {
            if (rule.name == QLatin1String("type") && rule.words.isEmpty())
                continue; // that of an item
            within("optional", [&] {
                m_xml.writeStartElement("attribute");
                m_xml.writeAttribute("name", rule.name);
                value(rule);
                m_xml.writeEndElement();
            });
        }
    }

    void value(const AttributeRule &rule)
    {
        if (!rule.words.isEmpty()) {
            within("choice", [&] {
                for (const QString &word : rule.words)
                    m_xml.writeTextElement("value", word);
            });
        } else if (rule.kind == AttributeRule::Number || rule.kind == AttributeRule::Limit) {
            m_xml.writeEmptyElement("data");
            m_xml.writeAttribute("type", "integer");
        } else {
            m_xml.writeEmptyElement("text");
        }
    }

    /// Languages and ids have any names.
    void translations()
    {
        element("translations",
                [&] { anyElements([&] { anyElements([&] { m_xml.writeEmptyElement("text"); }); }); });
    }

    template <class Content>
    void anyElements(Content content)
    {
        within("zeroOrMore", [&] {
            within("element", [&] {
                m_xml.writeEmptyElement("anyName");
                content();
            });
        });
    }

    /// A tag is an empty element of any name. An element whose name is no word of descriptions may also be a
    /// dialog, a list of values, or what contains some of them.
    void tag()
    {
        within("choice", [&] {
            within("element", [&] {
                m_xml.writeEmptyElement("anyName");
                m_xml.writeEmptyElement("empty");
            });
            within("element", [&] {
                within("anyName", [&] {
                    within("except", [&] {
                        m_xml.writeTextElement("name", itemTag);
                        for (const ElementRule &rule : m_words.elements())
                            m_xml.writeTextElement("name", rule.tag);
                    });
                });
                attributes(controlAttributes());
                QStringList inside{pageGridName};
                for (const char *child : {"title", "tooltip", "timetask", "action", "key", "regexp_key"})
                    inside.append(definitionOf(QString::fromLatin1(child)));
                content(inside);
            });
        });
    }

    const Vocabulary &m_words = Vocabulary::instance();
    QByteArray m_text;
    QXmlStreamWriter m_xml{&m_text};
};

} // namespace

QByteArray descriptionSchema()
{
    return SchemaWriter().write();
}

} // namespace paravue
