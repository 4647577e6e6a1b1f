#include "store/IniText.h"

#include "store/IniGrammar.h"
#include "store/PiecewiseCopy.h"

#include <algorithm>
#include <cstring>

namespace paravue
{

namespace
{

bool isAscii(QByteArrayView bytes)
{
    unsigned char all = 0;
    for (const char c : bytes)
        all |= uchar(c);
    return all < 0x80;
}

/// Fills in where name and value of a scanned line stand; \a bytesOf tells how many bytes its first
/// characters take. False for a line that is not marked.
template <typename View, typename BytesOf>
bool fillIn(IniText::Mark &mark, View line, const IniLine<View> &scanned, BytesOf bytesOf)
{
    if (scanned.kind == IniLine<View>::Other)
        return false;
    const auto position = [&](const auto *character) { return quint32(bytesOf(character - line.data())); };
    mark = {};
    mark.isSection = scanned.kind == IniLine<View>::Section;
    mark.nameBegin = position(scanned.name.data());
    mark.nameEnd = position(scanned.name.data() + scanned.name.size());
    if (!mark.isSection) {
        mark.valueBegin = position(scanned.value.data());
        mark.valueEnd = position(scanned.value.data() + scanned.value.size());
    }
    return true;
}

} // namespace

void IniText::Mark::moveBy(qint64 distance)
{
    for (quint32 *position : {&begin, &end, &nameBegin, &nameEnd, &valueBegin, &valueEnd})
        *position = quint32(*position + distance);
}

IniText::IniText(QByteArray bytes, std::vector<Mark> marks)
    : m_bytes(std::move(bytes)), m_marks(std::move(marks))
{
}

QByteArray IniText::fileForm(QStringView line)
{
    return line.toUtf8().replace('\n', "\r\n");
}

bool IniText::mark(const QString &line, Mark &mark)
{
    const QStringView view(line);
    return fillIn(mark, view, scanIniLine(view, EmptyValue::IsKey),
                  [&](qsizetype size) { return fileForm(view.first(size)).size(); });
}

qint64 IniText::keyBytes() const
{
    qint64 bytes = 0;
    qint64 sectionSize = DefaultSection.size() + 1;
    for (const Mark &mark : m_marks) {
        const qint64 nameSize = mark.nameEnd - mark.nameBegin;
        if (mark.isSection)
            sectionSize = nameSize + 1;
        else
            bytes += sectionSize + nameSize;
    }
    return bytes;
}

bool IniText::areKeepable(qint64 keyBytes, qint64 fileBytes)
{
    constexpr qint64 EachFile = qint64(64) << 20;
    constexpr qint64 EachByte = 8;
    return keyBytes <= std::max(EachFile, EachByte * fileBytes);
}

void IniText::append(const QByteArray &content)
{
    const qsizetype base = m_bytes.size();
    const bool allAscii = isAscii(content);
    constexpr qsizetype UsualLine = 24; // or longer
    m_marks.reserve(m_marks.size() + size_t(content.size() / UsualLine));
    PiecewiseCopy copy(content);
    const char *const data = content.constData();
    for (qsizetype begin = 0, end = 0; begin < content.size(); begin = end) {
        const void *lineFeed = std::memchr(data + begin, '\n', size_t(content.size() - begin));
        end = lineFeed ? static_cast<const char *>(lineFeed) - data + 1 : content.size();
        const bool hasCr = lineFeed && end - begin > 1 && data[end - 2] == '\r';
        // A line that ends in CR LF is read up to the CR: that is one white space just as well.
        QByteArrayView line(data + begin, end - begin - (hasCr ? 1 : 0));
        const qsizetype position = base + copy.position(begin);

        Mark mark;
        bool marked = false;
        if (allAscii || isAscii(line)) {
            const QLatin1StringView text(line);
            marked =
                fillIn(mark, text, scanIniLine(text, EmptyValue::IsKey), [](qsizetype size) { return size; });
        } else {
            const QString text = QString::fromUtf8(line);
            const QStringView view(text);
            marked = fillIn(mark, view, scanIniLine(view, EmptyValue::IsKey),
                            [&](qsizetype size) { return view.first(size).toUtf8().size(); });
            const QByteArray decoded = text.toUtf8();
            const qsizetype lineFeedSize = lineFeed && !hasCr ? 1 : 0;
            if (marked && decoded != line)
                copy.replace(begin, begin + line.size() - lineFeedSize,
                             {QByteArrayView(decoded).chopped(lineFeedSize)});
        }
        if (lineFeed && !hasCr)
            copy.replace(end - 1, end, {"\r\n"});
        if (marked) {
            mark.moveBy(position);
            mark.begin = quint32(position);
            mark.end = quint32(base + copy.position(end));
            m_marks.push_back(mark);
        }
    }
    if (base == 0)
        m_bytes = copy.result();
    else
        m_bytes += copy.result();
}

} // namespace paravue
