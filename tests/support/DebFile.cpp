#include "DebFile.h"

namespace paravue::test
{

namespace
{

QByteArray tarEntry(const QByteArray &name, const QByteArray &content)
{
    constexpr qsizetype Block = 512;
    QByteArray header = name.leftJustified(100, '\0') + QByteArray("0000644").leftJustified(24, '\0');
    header += QByteArray::number(content.size(), 8).rightJustified(11, '0');
    const qsizetype filler = (Block - content.size() % Block) % Block;
    return header.leftJustified(Block, '\0') + content + QByteArray(filler, '\0');
}

} // namespace

QByteArray arMember(const QByteArray &name, const QByteArray &content)
{
    QByteArray header = name.leftJustified(16) + QByteArray("0").leftJustified(12) +
                        QByteArray("0").leftJustified(6) + QByteArray("0").leftJustified(6) +
                        QByteArray("100644").leftJustified(8) +
                        QByteArray::number(content.size()).leftJustified(10);
    return header + "`\n" + content + (content.size() % 2 == 0 ? "" : "\n");
}

QByteArray debFile(const QByteArray &control)
{
    const QByteArray tar = tarEntry("./", {}) + tarEntry("./control", control) + QByteArray(1024, '\0');
    return "!<arch>\n" + arMember("debian-binary", "2.0\n") + arMember("control.tar", tar) +
           arMember("data.tar", {});
}

} // namespace paravue::test
