#include "ui/description/TextReferences.h"

namespace paravue
{
namespace
{

/// Blanks around an address are not part of it; those of a default value are.
QString trimmedAddress(const QString &address)
{
    return address.count(u'/') <= 2 ? address.trimmed() : address;
}

} // namespace

bool endsReference(QChar c)
{
    return c == u' ' || c == u'.' || c == u'@' || c == u'\r' || c == u'\n' || c == u'\t';
}

std::optional<BracedAddress> findBracedAddress(const QString &text, qsizetype from)
{
    qsizetype opening = text.indexOf(u'{', from);
    while (opening >= 0) {
        // The innermost pair counts: an address holds no braces.
        const qsizetype closing = text.indexOf(u'}', opening);
        if (closing < 0)
            break;
        opening = text.lastIndexOf(u'{', closing);
        QStringView inside = QStringView(text).mid(opening + 1, closing - opening - 1);
        while (inside.size() > 1 && inside.front().isSpace())
            inside = inside.mid(1);
        if (!inside.isEmpty())
            return BracedAddress{opening, closing + 1, trimmedAddress(inside.toString())};
        opening = text.indexOf(u'{', closing + 1);
    }
    return {};
}

} // namespace paravue
