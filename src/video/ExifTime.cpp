#include "video/ExifTime.h"

#include <QtEndian>

namespace paravue
{
namespace
{

constexpr quint16 ExifDirectory = 0x8769;
constexpr quint16 DateTimeOriginal = 0x9003;
constexpr quint16 OffsetTimeOriginal = 0x9011;

/// The Exif data of a JPEG: a TIFF file without a picture.
QByteArray exifOf(const QByteArray &jpeg)
{
    constexpr char Application1 = '\xE1';
    constexpr char StartOfScan = '\xDA';
    const QByteArray exif("Exif\0\0", 6);
    qsizetype segment = 2;
    while (segment + 4 <= jpeg.size() && jpeg[segment] == '\xFF' && jpeg[segment + 1] != StartOfScan) {
        const qsizetype length = qFromBigEndian<quint16>(jpeg.constData() + segment + 2);
        const QByteArray content = jpeg.mid(segment + 4, length - 2);
        if (jpeg[segment + 1] == Application1 && content.startsWith(exif))
            return content.mid(exif.size());
        segment += 2 + length;
    }
    return {};
}

/// The fields of a TIFF file.
class TiffFields
{
public:
    explicit TiffFields(const QByteArray &file) : m_file(file), m_isBigEndian(file.startsWith("MM")) {}

    quint32 firstDirectory() const { return number<quint32>(4); }
    /// A number, or where a longer value stands; 0 for none.
    quint32 value(quint32 directory, quint16 tag) const
    {
        const qint64 field = find(directory, tag);
        return field > 0 ? number<quint32>(field + 8) : 0;
    }
    /// A text of more than four bytes.
    QString text(quint32 directory, quint16 tag) const
    {
        const qint64 field = find(directory, tag);
        if (field == 0)
            return {};
        const QByteArray bytes = m_file.mid(number<quint32>(field + 8), number<quint32>(field + 4));
        return QString::fromLatin1(bytes.constData(), qstrnlen(bytes.constData(), size_t(bytes.size())));
    }

private:
    /// 0 behind the end.
    template <typename Number>
    Number number(qint64 place) const
    {
        if (place + qint64(sizeof(Number)) > m_file.size())
            return 0;
        const char *bytes = m_file.constData() + place;
        return m_isBigEndian ? qFromBigEndian<Number>(bytes) : qFromLittleEndian<Number>(bytes);
    }

    qint64 find(quint32 directory, quint16 tag) const
    {
        constexpr qint64 FieldSize = 12;
        const int fields = number<quint16>(directory);
        for (qint64 field = qint64(directory) + 2; field < directory + 2 + fields * FieldSize;
             field += FieldSize) {
            if (number<quint16>(field) == tag)
                return field;
        }
        return 0;
    }

    const QByteArray m_file;
    const bool m_isBigEndian;
};

} // namespace

QDateTime exifTime(const QByteArray &jpeg)
{
    const TiffFields fields(exifOf(jpeg));
    const quint32 directory = fields.value(fields.firstDirectory(), ExifDirectory);
    // "2026:11:22 23:59:58"
    QString text = fields.text(directory, DateTimeOriginal);
    if (directory == 0 || text.size() != 19)
        return {};
    text.replace(4, 1, u'-').replace(7, 1, u'-').replace(10, 1, u'T');
    const QDateTime time =
        QDateTime::fromString(text + fields.text(directory, OffsetTimeOriginal), Qt::ISODate);
    return time.isValid() ? time : QDateTime::fromString(text, Qt::ISODate);
}

} // namespace paravue
