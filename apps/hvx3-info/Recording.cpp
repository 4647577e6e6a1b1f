#include "Recording.h"

#include "InfoText.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

namespace paravue
{

namespace
{

constexpr qint64 PieceSize = 64 * 1024;

bool openStandardInput(QFile &input)
{
#ifdef Q_OS_WIN
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    return input.open(stdin, QIODevice::ReadOnly);
}

void openRecording(QFile &input, const QString &file)
{
    const bool isStandardInput = file == u'-';
    if (!isStandardInput && QFileInfo(file).isDir())
        throw MediaError(InfoText::tr("%1 is a folder").arg(file));
    if (!isStandardInput && !QFileInfo::exists(file))
        throw MediaError(InfoText::tr("there is no file %1").arg(file));
    input.setFileName(file);
    if (!(isStandardInput ? openStandardInput(input) : input.open(QIODevice::ReadOnly)))
        throw MediaError(InfoText::tr("cannot open %1: %2").arg(file, input.errorString()));
}

} // namespace

void readRecording(const QString &file, const std::function<bool(const QByteArray &piece)> &take)
{
    QFile input;
    openRecording(input, file);
    QByteArray piece(PieceSize, Qt::Uninitialized);
    for (;;) {
        const qint64 size = input.read(piece.data(), PieceSize);
        // On Windows the end of a pipe is reported as an error.
        if (size < 0 && file == u'-' && std::feof(stdin) != 0)
            return;
        if (size < 0)
            throw MediaError(InfoText::tr("cannot read %1: %2").arg(file, input.errorString()));
        if (size == 0)
            return;
        if (!take(QByteArray::fromRawData(piece.constData(), size)))
            return;
    }
}

bool isPipe(const QString &file)
{
    const QFileInfo info(file);
    return info.exists() && !info.isFile() && !info.isDir();
}

} // namespace paravue
