// Changes the tree of a description. Changed bytes alone rarely give XML that is read to its end.
//
// A third of the inputs, and those whose description is no XML, are changed by bytes as usual.

#include "FuzzInput.h"

#include "store/XmlLimits.h"

#include <QDomDocument>
#include <QStringList>

#include <array>
#include <cstring>
#include <random>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

using namespace paravue::fuzz;

namespace
{

using Random = std::minstd_rand;

const QStringList OddValues{"",  "0",   "-1",  "1",   "2147483647", "-2147483648", "99999999999",
                            "1", "yes", "no",  "on",  "1,2,3",      "@t",          "{net/untitled/IP}",
                            "9", "40",  "300", "off", "{//}",       "net/a/b/c",   "main_window"};

template <class List>
auto pick(const List &list, Random &random)
{
    return list.at(static_cast<qsizetype>(random() % static_cast<size_t>(list.size())));
}

void collect(const QDomElement &element, QList<QDomElement> &all)
{
    all << element;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        collect(child, all);
}

QString changed(const QString &text)
{
    std::array<uint8_t, 256> bytes{};
    const QByteArray old = text.toUtf8().left(128);
    std::memcpy(bytes.data(), old.constData(), static_cast<size_t>(old.size()));
    const size_t size = LLVMFuzzerMutate(bytes.data(), static_cast<size_t>(old.size()), bytes.size());
    return QString::fromUtf8(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(size));
}

void changeAttribute(QDomElement element, const QDomElement &other, Random &random)
{
    const QDomNamedNodeMap attributes = (random() % 2 ? other : element).attributes();
    if (attributes.isEmpty())
        return;
    const QDomAttr attribute = attributes.item(static_cast<int>(random() % attributes.size())).toAttr();
    switch (random() % 4) {
    case 0:
        element.setAttribute(attribute.name(), pick(OddValues, random));
        break;
    case 1:
        element.setAttribute(attribute.name(), changed(attribute.value()));
        break;
    case 2:
        element.removeAttribute(attribute.name());
        break;
    default:
        element.setAttribute(attribute.name(), attribute.value());
    }
}

void changeText(QDomElement element, Random &random)
{
    QDomText text = element.firstChild().toText();
    if (text.isNull())
        element.insertBefore(element.ownerDocument().createTextNode(pick(OddValues, random)), {});
    else
        text.setData(random() % 2 ? pick(OddValues, random) : changed(text.data()));
}

void changeTree(QDomDocument &document, Random &random)
{
    QList<QDomElement> all;
    collect(document.documentElement(), all);
    QDomElement element = pick(all, random);
    const QDomElement other = pick(all, random);
    switch (random() % 6) {
    case 0:
        element.parentNode().removeChild(element);
        break;
    case 1:
        element.appendChild(other.cloneNode());
        break;
    case 2:
        if (element != document.documentElement())
            element.parentNode().insertBefore(other.cloneNode(), element);
        break;
    case 3:
        changeText(element, random);
        break;
    default:
        changeAttribute(element, other, random);
    }
}

bool readTree(QDomDocument &document, const QByteArray &text)
{
    return !paravue::xmlLimitViolation(text) && document.setContent(text);
}

/// The size of the input that the pieces make, or 0 when it is too large.
size_t write(const QList<QByteArray> &pieces, uint8_t *data, size_t maxSize)
{
    const QByteArray input = pieces.join(PieceBorder);
    if (static_cast<size_t>(input.size()) > maxSize)
        return 0;
    std::memcpy(data, input.constData(), static_cast<size_t>(input.size()));
    return static_cast<size_t>(input.size());
}

} // namespace

/// Puts a part of one description into another one.
extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2,
                                            size_t size2, uint8_t *out, size_t maxSize, unsigned int seed)
{
    Random random(seed + 1);
    QList<QByteArray> pieces = FuzzInput(data1, size1).pieces();
    QDomDocument document;
    QDomDocument other;
    if (!readTree(document, pieces.first()) || !readTree(other, FuzzInput(data2, size2).pieces().first()))
        return 0;
    QList<QDomElement> parents;
    collect(document.documentElement(), parents);
    QList<QDomElement> parts;
    collect(other.documentElement(), parts);
    pick(parents, random).appendChild(document.importNode(pick(parts, random), true));
    pieces.first() = document.toByteArray(-1);
    return write(pieces, out, maxSize);
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    Random random(seed + 1);
    QList<QByteArray> pieces = FuzzInput(data, size).pieces();
    QDomDocument document;
    if (random() % 3 == 0 || !readTree(document, pieces.first()))
        return LLVMFuzzerMutate(data, size, maxSize);
    for (size_t changes = random() % 3 + 1; changes > 0 && !document.documentElement().isNull(); --changes)
        changeTree(document, random);
    pieces.first() = document.toByteArray(-1);
    const size_t written = write(pieces, data, maxSize);
    return written > 0 ? written : LLVMFuzzerMutate(data, size, maxSize);
}
