#pragma once

#include <QDomDocument>
#include <QHash>
#include <QList>
#include <QString>

namespace paravue
{

/// The interface description: an XML document with the root element "pvsetup", read whole and kept for the
/// life of the window that is built from it.
///
/// Elements are found by tag through an index, made at the first look-up, never by a search of the document:
/// a search at every event would make the cost of one edit grow with the size of the description. The
/// translation table has an index of its own and is not part of the tag index, as a text is never the target
/// of an action; neither are the elements that append() adds.
class InterfaceDocument
{
public:
    /// Reads the bytes of a file. Returns an empty string, or a translated message.
    static QString read(const QString &path, QByteArray &text);
    /// Reads and validates \a text, the bytes of the file. Returns an empty string, or a translated message;
    /// the document keeps what it held before in that case.
    QString load(const QByteArray &text, const QString &path);
    QString load(const QString &path);

    QDomElement root() const { return m_document.documentElement(); }

    /// Every element with this tag, in document order.
    QList<QDomElement> elements(const QString &tag) const;
    /// The first of them; a null element when there is none.
    QDomElement first(const QString &tag) const { return elements(tag).value(0); }

    /// The text \a id in \a language; empty when there is none.
    QString translation(const QString &language, const QString &id) const;

    /// Adds an empty child element behind the others.
    QDomElement append(QDomElement parent, const QString &tag);

private:
    void index(const QDomElement &element) const;
    void indexTranslations(const QDomElement &translations);

    QDomDocument m_document;
    mutable QHash<QString, QList<QDomElement>> m_elements; ///< empty until the first look-up
    QHash<QString, QHash<QString, QString>> m_translations;
};

/// Tags that mark what a window was built from, "controlWidget" and "link" with a number; a description does
/// not use them itself.
bool isDecoration(const QString &tag);

/// The text directly in \a element, without that of its children.
QString ownText(const QDomElement &element);

/// The text of an element that holds an address: as written, but for an address that an XML editor has put on
/// a line of its own, which loses the white space around it.
QString addressText(const QDomElement &element);

/// The texts of all children with this tag.
QStringList childTexts(const QDomElement &element, const QString &tag);
QStringList childAddresses(const QDomElement &element, const QString &tag = QStringLiteral("key"));
/// The address in the first "key" child; empty without one.
QString firstAddress(const QDomElement &element);

/// A decimal integer; 0 when it is absent or malformed.
int intAttribute(const QDomElement &element, const QString &name);

} // namespace paravue
