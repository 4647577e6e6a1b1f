#include "recorder/protocol/LogText.h"

namespace recorder
{

namespace
{

constexpr qsizetype MaxShown = 120;

QString printable(QStringView text)
{
    QString shown;
    for (const QChar c : text) {
        if (c.isPrint())
            shown += c;
        else
            shown += QStringLiteral("\\x%1").arg(int(c.unicode()), 2, 16, QLatin1Char('0'));
    }
    return shown;
}

} // namespace

QString readableRequest(const QByteArray &line)
{
    QByteArray shown = line.left(MaxShown);
    // A login begins with a byte that selects the service.
    if (shown.startsWith('\x04'))
        shown.remove(0, 1);
    else if (shown.startsWith('\x01'))
        shown.replace(0, 1, "video ");
    const qsizetype password = shown.toUpper().indexOf("PASS");
    if (const qsizetype equals = shown.indexOf('=', std::max<qsizetype>(0, password));
        password >= 0 && equals >= 0)
        shown = shown.left(equals + 1) + "***";
    else if (line.size() > MaxShown)
        shown += "...";
    return printable(QString::fromUtf8(shown));
}

QString readableBody(const QByteArray &body)
{
    const QString shown = printable(QString::fromUtf8(body.left(MaxShown)));
    return body.size() > MaxShown ? shown + QStringLiteral("...") : shown;
}

} // namespace recorder
