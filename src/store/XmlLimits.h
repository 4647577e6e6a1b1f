#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace paravue
{

// A description written for people to use stays far below all of these. They bound what a document tree
// costs: its memory, and time that grows with the square of the nesting depth and of the attributes of one
// element.
inline constexpr int MaxXmlNesting = 64;
inline constexpr int MaxXmlElements = 200'000;
inline constexpr int MaxXmlAttributesOfOneElement = 256;
/// Comments, processing instructions and CDATA sections.
inline constexpr int MaxXmlOtherNodes = 100'000;
/// What the nodes of a QDomDocument may need without their texts, reckoned from XmlNodeBytes.
inline constexpr qsizetype MaxXmlTreeBytes = 96 * 1024 * 1024;

/// Bytes of a node with its allocations, measured with Qt 6.4 on a 64-bit system and rounded up. The first
/// attribute of an element costs most, as it makes the element's table of attributes.
struct XmlNodeBytes {
    static constexpr int Element = 500; ///< with the node of its text
    static constexpr int FirstAttribute = 2200;
    static constexpr int FurtherAttribute = 450;
    static constexpr int Other = 250;
};

/// Looks at an XML text from an untrusted sender before a document tree is built from it, and says in words
/// for the user which limit it exceeds; nothing when it can be parsed safely.
///
/// A document type declaration is accepted, one with an internal subset (where entities are declared) is not.
/// The look is one pass over the bytes and does not replace the parser: a text that is not well-formed XML
/// passes up to its first error, which is where a parser stops as well.
std::optional<QString> xmlLimitViolation(const QByteArray &text);

} // namespace paravue
