#include "device/GzText.h"

#include <QFile>

#include <memory>

#include <zlib.h>

namespace paravue
{

namespace
{

struct CloseGzFile {
    void operator()(gzFile file) const { gzclose(file); }
};
using GzHandle = std::unique_ptr<std::remove_pointer_t<gzFile>, CloseGzFile>;

GzHandle openGzFile(const QString &path)
{
#ifdef Q_OS_WIN
    return GzHandle(gzopen_w(qUtf16Printable(path), "rb"));
#else
    return GzHandle(gzopen(QFile::encodeName(path).constData(), "rb"));
#endif
}

} // namespace

std::optional<QByteArray> readGzFile(const QString &path, qsizetype maximumSize)
{
    constexpr qsizetype BlockSize = 64 * 1024;
    const GzHandle file = openGzFile(path);
    if (!file)
        return QByteArray();
    gzbuffer(file.get(), BlockSize);

    QByteArray content;
    for (;;) {
        const qsizetype size = content.size();
        // Doubling keeps the copies of a growing text in proportion to its size.
        content.resize(qMax(BlockSize, 2 * size));
        const int read = gzread(file.get(), content.data() + size, unsigned(content.size() - size));
        content.resize(size + qMax(read, 0));
        if (read <= 0)
            return content;
        if (content.size() > maximumSize)
            return {};
    }
}

} // namespace paravue
