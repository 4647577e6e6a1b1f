#include "controls/MessageText.h"

#include <QTextDocument>

namespace paravue
{

QString plainMessage(const QString &message)
{
    QString plain = message;
    return plain.replace(QLatin1String("<br>"), QLatin1String("\n"));
}

QString literalToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace paravue
