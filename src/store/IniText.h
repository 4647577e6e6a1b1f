#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

namespace paravue
{

/// The lines of one configuration file as they stand in the file: UTF-8 with CR LF line ends. Lines that hold
/// a key or open a section are marked; all the others are only kept, to the byte.
class IniText
{
public:
    /// One marked line; all numbers are positions in the text.
    struct Mark {
        quint32 begin = 0;
        quint32 end = 0; ///< behind the line's end
        quint32 nameBegin = 0;
        quint32 nameEnd = 0;
        quint32 valueBegin = 0; ///< of a key, without quotes
        quint32 valueEnd = 0;
        bool isSection = false;

        void moveBy(qint64 distance);
    };

    /// Larger files are not read as configuration files, so positions fit into 32 bits.
    static constexpr qint64 SizeLimit = qint64(1) << 30;

    IniText() = default;
    /// \a marks are those of \a bytes, in order.
    IniText(QByteArray bytes, std::vector<Mark> marks);

    /// Adds the lines of a file's \a content. A LF that has no CR gets one; what is no UTF-8 in a marked line
    /// becomes the replacement character, as in the names and values that are read from it.
    void append(const QByteArray &content);

    /// Tells what the single line \a line is, whose form in the file is \a bytes. False when it is neither
    /// key nor section.
    static bool mark(const QString &line, Mark &mark);
    /// \a line as it stands in a file.
    static QByteArray fileForm(QStringView line);

    /// How many bytes the keys have together, each with the name of its section before it.
    qint64 keyBytes() const;
    /// False when the keys cannot be kept: one long name of a section, which stands in the file once, makes
    /// each of very many keys in it as long.
    bool hasKeepableKeys() const { return areKeepable(keyBytes(), m_bytes.size()); }
    /// The same of \a keyBytes in \a fileBytes.
    static bool areKeepable(qint64 keyBytes, qint64 fileBytes);

    const QByteArray &bytes() const { return m_bytes; }
    const std::vector<Mark> &marks() const { return m_marks; }
    QByteArrayView name(const Mark &mark) const { return slice(mark.nameBegin, mark.nameEnd); }
    QByteArrayView value(const Mark &mark) const { return slice(mark.valueBegin, mark.valueEnd); }
    QByteArrayView slice(qsizetype begin, qsizetype end) const
    {
        return {m_bytes.constData() + begin, end - begin};
    }

private:
    QByteArray m_bytes;
    std::vector<Mark> m_marks;
};

} // namespace paravue
