// Writes the inputs that the fuzz targets begin with, each into the folder of its target.
//
// Usage: fuzz_corpus DIR

#include "FuzzInput.h"

#include "support/EncodedClip.h"
#include "support/Hvx3Bytes.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace paravue::fuzz;
using namespace paravue::test;

namespace
{

struct Codec {
    quint8 number; ///< as the decoder's target knows it
    QByteArray encoder;
    QByteArray label;
};

const QList<Codec> Codecs = {{0, "libx264", "H264"}, {1, "mpeg4", "mp4v"}, {2, "mjpeg", "mjpeg"}};

bool write(const QString &folder, const QString &name, const QByteArray &bytes)
{
    QFile file(QDir(folder).filePath(name));
    const bool written =
        QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    if (!written)
        std::fprintf(stderr, "fuzz_corpus: %s: %s\n", qPrintable(file.fileName()),
                     qPrintable(file.errorString()));
    return written;
}

QByteArray streamOf(const Codec &codec, const EncodedClip &clip)
{
    const QByteArray tags = QByteArrayLiteral("\1-utf8\0\2Clock\0\7\5twice\0\5text\0");
    QByteArray stream =
        hvx3Header({{0, 1, codec.label, "Camera", ""}, {1, 4, "", "Events", "-utf8"}, {2, 2, "", "", ""}},
                   "Recorder", tags);
    quint16 milliseconds = 0;
    stream += hvx3Index(1700000000, 7, "blob");
    for (const QByteArray &picture : clip.pictures) {
        stream += hvx3Frame(0, picture, 400, {milliseconds, 2, 1});
        stream += hvx3Data(1, WholeFrame, "text") + hvx3Data(2, WholeFrame, "1");
        milliseconds += 40;
    }
    return stream + "garbage" + hvx3Index(1700000001) + hvx3Data(0, MiddleFragment, "lost") +
           hvx3Data(9, WholeFrame, "unknown") + hvx3Index(1700000002);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("Usage: fuzz_corpus DIR\n", stderr);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    bool written = true;
    for (const Codec &codec : Codecs) {
        const EncodedClip clip =
            encodeClip({.encoder = codec.encoder, .size = {48, 32}, .pictures = 3, .quality = 12});
        const QByteArray stream = streamOf(codec, clip);
        const QString name = QString::fromLatin1(codec.label);
        written &= write(root + "/parser", name, QByteArray(2, '\0') + stream);
        written &= write(root + "/demuxer", name, QByteArrayLiteral("\xff\0\0") + stream);
        written &= write(root + "/receiver", name, QByteArrayLiteral("\x0e\0") + stream);
        if (codec.label == "mjpeg")
            written &= write(root + "/still", name, clip.pictures.first());
        written &= write(root + "/decoder", name,
                         QByteArray(1, char(codec.number)) + '\0' + clip.pictures.join(PieceBorder));
    }
    return written ? 0 : 1;
}
