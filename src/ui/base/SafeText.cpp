#include "ui/base/SafeText.h"

#include <QTextDocument>

namespace paravue
{
namespace
{

bool refersOutside(const QString &text)
{
    for (const char *word : {"src", "href", "url", "background", "import"}) {
        if (text.contains(QLatin1String(word), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

} // namespace

QString safeRichText(const QString &text)
{
    return Qt::mightBeRichText(text) && refersOutside(text) ? Qt::convertFromPlainText(text) : text;
}

Qt::TextFormat safeTextFormat(const QString &text)
{
    return Qt::mightBeRichText(text) && refersOutside(text) ? Qt::PlainText : Qt::AutoText;
}

} // namespace paravue
