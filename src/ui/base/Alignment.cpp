#include "ui/base/Alignment.h"

namespace paravue
{

Qt::Alignment horizontalAlignment(const QString &word)
{
    if (word == QLatin1String("right"))
        return Qt::AlignRight;
    return word == QLatin1String("center") ? Qt::AlignHCenter : Qt::AlignLeft;
}

Qt::Alignment verticalAlignment(const QString &word)
{
    if (word == QLatin1String("bottom"))
        return Qt::AlignBottom;
    return word == QLatin1String("top") ? Qt::AlignTop : Qt::AlignVCenter;
}

Qt::Orientation orientation(const QString &word)
{
    return word == QLatin1String("horizontal") ? Qt::Horizontal : Qt::Vertical;
}

} // namespace paravue
