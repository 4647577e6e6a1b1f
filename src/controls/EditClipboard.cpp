#include "controls/EditClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace paravue
{
namespace
{

constexpr qsizetype LargestCopy = 64 * 1024;

} // namespace

void copyLines(const QString &mimeType, const QStringList &lines, const QStringList &readable)
{
    auto *data = new QMimeData; // the clipboard takes it
    data->setData(mimeType, lines.join(u'\n').toUtf8());
    data->setText(readable.join(u'\n'));
    QGuiApplication::clipboard()->setMimeData(data);
}

QStringList copiedLines(const QString &mimeType)
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    if (!data)
        return {};
    const QString text = data->hasFormat(mimeType) ? QString::fromUtf8(data->data(mimeType)) : data->text();
    if (text.isEmpty() || text.size() > LargestCopy)
        return {};
    QStringList lines = text.split(u'\n');
    for (QString &line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
    }
    while (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace paravue
