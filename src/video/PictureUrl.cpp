#include "video/PictureUrl.h"

#include <QRegularExpression>

namespace paravue
{
namespace
{

/// A negative number is a port only behind the host, not behind the user of a login.
QString withUnsignedPort(const QString &text)
{
    static const QRegularExpression negativePort(QStringLiteral("^[^/?#]*://[^/?#]*:(-\\d{1,5})(?=$|[/?#])"));
    const QRegularExpressionMatch match = negativePort.match(text);
    const int port = match.captured(1).toInt();
    if (!match.hasMatch() || port < -0x8000 || port >= 0)
        return text;
    return text.left(match.capturedStart(1)) + QString::number(port + 0x10000) +
           text.mid(match.capturedEnd(1));
}

} // namespace

QUrl pictureUrl(const QString &text)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*://"));
    const QString written = text.trimmed();
    const QUrl url(
        withUnsignedPort(scheme.match(written).hasMatch() ? written : QStringLiteral("http://") + written));
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return isWeb && !url.host().isEmpty() && url.port(1) > 0 ? url : QUrl();
}

} // namespace paravue
