#include "store/IniMapCodec.h"

#include "store/IniGrammar.h"

#include <QBuffer>
#include <QFileDevice>

namespace paravue
{

namespace
{

/// Cuts off what an earlier, longer text left behind.
void truncate(QIODevice &device, qint64 size)
{
    if (auto *file = qobject_cast<QFileDevice *>(&device))
        file->resize(size);
    else if (auto *buffer = qobject_cast<QBuffer *>(&device))
        buffer->buffer().truncate(size);
}

} // namespace

bool readIniMap(QIODevice &device, QMap<QString, QVariant> &map)
{
    // Qt's text mode drops every CR; only one directly before a LF belongs to the line end.
    device.setTextModeEnabled(false);
    device.seek(0);
    QString section = DefaultSection;
    while (!device.atEnd()) {
        QByteArray bytes = device.readLine();
        if (bytes.endsWith("\r\n"))
            bytes.replace(bytes.size() - 2, 2, "\n");
        const QString text = QString::fromUtf8(bytes);
        const auto line = scanIniLine(QStringView(text), EmptyValue::IsIgnored);
        if (line.kind == line.Key)
            map[section + u'/' + line.name.toString()] = line.value.toString();
        else if (line.kind == line.Section)
            section = line.name.toString();
    }
    device.setTextModeEnabled(true);
    return true;
}

bool writeIniMap(QIODevice &device, const QMap<QString, QVariant> &map)
{
    QString text;
    QString section;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        const QString entrySection = entry.key().section(u'/', 0, 0);
        if (entrySection != section) {
            if (!text.isEmpty())
                text += u'\n';
            text += iniSectionLine(entrySection);
            section = entrySection;
        }
        text += iniKeyLine(entry.key().section(u'/', 1), entry->toString(), EmptyValue::IsIgnored);
    }

    // Qt's text mode writes CR LF on some systems only.
    device.setTextModeEnabled(false);
    device.seek(0);
    device.write(text.toUtf8().replace("\n", "\r\n"));
    truncate(device, device.pos());
    device.setTextModeEnabled(true);
    return true;
}

} // namespace paravue
