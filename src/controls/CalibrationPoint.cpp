#include "controls/CalibrationPoint.h"

#include <QStringList>

#include <algorithm>

namespace paravue
{
namespace
{

/// Behind which the name stands.
constexpr int Numbers = 5;

QString decimal(double number)
{
    return QString::number(number, 'g', 6);
}

/// The files of recorders have no way to write a single quote within a value: it would end there, and the
/// point would not be read again.
QString withoutSingleQuotes(QString text)
{
    return text.replace(u'\'', u'\u2019');
}

} // namespace

std::optional<QPointF> placeOfPoint(const QString &text)
{
    // Only the first two fields are read: the rest may be long, and every painting and mouse event asks for
    // all places.
    const qsizetype comma = text.indexOf(u',');
    if (comma < 0)
        return {};
    const qsizetype end = text.indexOf(u',', comma + 1);
    const auto x = parseDecimal(text.left(comma));
    const auto y = parseDecimal(text.mid(comma + 1, end < 0 ? -1 : end - comma - 1));
    if (!x || !y)
        return {};
    return QPointF(std::clamp(*x, 0.0, 1.0), std::clamp(*y, 0.0, 1.0));
}

QString nameOfPoint(const QString &text)
{
    return text.section(u',', Numbers).trimmed();
}

QString namedPoint(const QString &text, const QString &name)
{
    if (!placeOfPoint(text) || text.count(u',') < Numbers - 1)
        return text;
    const QString numbers = text.section(u',', 0, Numbers - 1);
    return name.isEmpty() ? numbers : numbers + u',' + withoutSingleQuotes(name);
}

QString placedPoint(const QString &text, const QPointF &place, const std::optional<PtzPosition> &camera)
{
    QStringList fields = placeOfPoint(text) ? text.split(u',') : QStringList{{}, {}};
    fields[0] = QString::number(place.x(), 'f', 4);
    fields[1] = QString::number(place.y(), 'f', 4);
    if (!camera)
        return withoutSingleQuotes(fields.join(u','));
    fields.resize(std::max<qsizetype>(fields.size(), Numbers));
    fields[2] = decimal(camera->pan);
    fields[3] = decimal(camera->tilt);
    if (camera->zoom)
        fields[4] = decimal(*camera->zoom);
    else if (fields[4].isEmpty())
        fields[4] = decimal(0);
    return withoutSingleQuotes(fields.join(u','));
}

} // namespace paravue
