#include "capi/Texts.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <limits>

namespace paravue::capi
{

std::optional<QString> readText(const char *text, size_t length)
{
    if (!text)
        return {};
    const size_t size = length == PARAVUE_TERMINATED ? std::strlen(text) : length;
    if (size > size_t(std::numeric_limits<int>::max()) || std::memchr(text, 0, size))
        return {};
    // Without the state of a stream an unfinished letter at the end is an error too.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decode(QByteArrayView(text, qsizetype(size)));
    return decode.hasError() ? std::nullopt : std::optional(decoded);
}

std::optional<QString> readOptionalText(const char *text, size_t length)
{
    return text ? readText(text, length) : QString();
}

paravue_result writeText(Library &library, const QString &text, char *buffer, size_t capacity, size_t *length)
{
    if (!length || (!buffer && capacity > 0))
        return library.fail(PARAVUE_WRONG_USE);
    const QByteArray bytes = text.toUtf8();
    *length = size_t(bytes.size());
    if (*length < capacity) {
        std::memcpy(buffer, bytes.constData(), *length + 1);
        return PARAVUE_OK;
    }
    if (capacity > 0)
        buffer[0] = '\0';
    return library.fail(PARAVUE_BUFFER_TOO_SMALL);
}

} // namespace paravue::capi
