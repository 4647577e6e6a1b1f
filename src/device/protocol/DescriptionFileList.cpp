#include "device/protocol/DescriptionFileList.h"

#include "store/XmlLimits.h"

#include <QXmlStreamReader>

namespace paravue
{

namespace
{

ListedFile::Kind kindFrom(QStringView type)
{
    if (type == u"sectionless")
        return ListedFile::Kind::Sectionless;
    if (type == u"state")
        return ListedFile::Kind::State;
    return ListedFile::Kind::AsItComes;
}

ListedFile listedFile(const QXmlStreamAttributes &attributes)
{
    return {attributes.value("name").toString(), attributes.value("get_command").toString(),
            attributes.value("put_command").toString(), kindFrom(attributes.value("type"))};
}

/// A quick look that spares most descriptions the parser: bytes without NUL are in an encoding that keeps
/// ASCII, where the element cannot be written in any other way.
bool mayHoldFileList(const QByteArray &description)
{
    // Blocks without a branch inside, which the compiler turns into wide comparisons.
    constexpr qsizetype BlockSize = 4096;
    constexpr qsizetype Ahead = 2;
    const auto found = [](const char *bytes, qsizetype size) {
        unsigned char any = 0;
        for (qsizetype i = 0; i < size; ++i) {
            any |= (bytes[i] == '\0');
            any |= (bytes[i] == '<') & (bytes[i + 1] == 'd') & (bytes[i + 2] == 'i');
        }
        return any != 0;
    };
    const qsizetype last = description.size() - Ahead;
    for (qsizetype begin = 0; begin < last; begin += BlockSize) {
        if (found(description.constData() + begin, qMin(BlockSize, last - begin)))
            return true;
    }
    return description.last(qMin(description.size(), Ahead)).contains('\0');
}

/// The whole document has to be well-formed, so it is read to its end.
std::optional<QList<ListedFile>> readList(const QByteArray &description)
{
    constexpr int ListDepth = 2;
    std::optional<QList<ListedFile>> files;
    bool inList = false;
    int depth = 0;
    QXmlStreamReader reader(description);
    // As a document tree is built by default: a prefix is part of the name and needs no declaration.
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            ++depth;
            if (depth == ListDepth && !files && reader.qualifiedName() == u"di") {
                files.emplace();
                inList = true;
            } else if (inList && depth == ListDepth + 1 && reader.qualifiedName() == u"difile") {
                files->append(listedFile(reader.attributes()));
            }
        } else if (token == QXmlStreamReader::EndElement) {
            if (depth == ListDepth)
                inList = false;
            --depth;
        }
    }
    if (reader.hasError())
        return {};
    return files;
}

} // namespace

std::optional<QList<ListedFile>> readDescriptionFileList(const QByteArray &description)
{
    if (!mayHoldFileList(description) || xmlLimitViolation(description))
        return {};
    return readList(description);
}

} // namespace paravue
