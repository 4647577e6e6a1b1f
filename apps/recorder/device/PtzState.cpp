#include "recorder/device/PtzState.h"

#include "recorder/files/IniValues.h"

#include <QList>

#include <algorithm>
#include <cmath>

namespace recorder
{

namespace
{

constexpr int StepPeriod = 40;    // milliseconds, as between pictures at the default rate
constexpr double StepSize = 0.02; // from one end of a range of 2 to the other in four seconds
constexpr int PlaceFields = 2;    // of a point, before those of its position
constexpr int PoseFields = 3;

std::optional<double> finiteNumber(const QByteArray &text)
{
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<CameraPose> parsePose(const QList<QByteArray> &fields)
{
    if (fields.size() != PoseFields)
        return std::nullopt;
    double numbers[PoseFields];
    for (int i = 0; i < PoseFields; ++i) {
        const std::optional<double> number = finiteNumber(fields[i]);
        if (!number)
            return std::nullopt;
        numbers[i] = *number;
    }
    return CameraPose{std::clamp(numbers[0], -1.0, 1.0), std::clamp(numbers[1], -1.0, 1.0),
                      std::clamp(numbers[2], 0.0, 1.0)};
}

/// Whether the text is a valid point. After the numbers any printable text is allowed.
bool isPoint(const QByteArray &text)
{
    const QString shown = QString::fromUtf8(text);
    const bool isPrintable = shown.toUtf8() == text && std::all_of(shown.begin(), shown.end(), [](QChar c) {
                                 return c.isPrint() || c.isSurrogate();
                             });
    const QList<QByteArray> fields = text.split(',');
    const qsizetype numbers = fields.size() == PlaceFields ? PlaceFields : PlaceFields + PoseFields;
    return text.size() <= PtzState::MaxPointText && isPrintable && fields.size() >= numbers &&
           std::all_of(fields.begin(), fields.begin() + numbers, finiteNumber);
}

/// A number from 1 to MaxPoints in decimal digits.
std::optional<int> pointNumber(const QByteArray &digits)
{
    const bool hasDigitsOnly =
        std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    const int number = hasDigitsOnly ? digits.toInt() : 0;
    return number >= 1 && number <= PtzState::MaxPoints ? std::optional(number) : std::nullopt;
}

double stepTowards(double value, double goal)
{
    return std::abs(goal - value) <= StepSize ? goal : value + std::copysign(StepSize, goal - value);
}

} // namespace

QByteArray CameraPose::text() const
{
    // Adding 0 turns -0 into 0, which prints without a sign.
    const auto number = [](double value) {
        return QByteArray::number(std::round(value * 1000) / 1000 + 0, 'f', 3);
    };
    return number(pan) + ',' + number(tilt) + ',' + number(zoom);
}

PtzState::PtzState(QObject *parent) : QObject(parent)
{
    m_stepTimer.setInterval(StepPeriod);
    connect(&m_stepTimer, &QTimer::timeout, this, &PtzState::step);
}

void PtzState::readFile(const QByteArray &streamsFile)
{
    const QMap<QByteArray, QByteArray> values = iniValues(streamsFile);
    for (int number = 1; number <= MaxPoints; ++number) {
        const auto point = values.constFind("ptz/POINT" + QByteArray::number(number));
        if (point == values.cend() || !isPoint(*point))
            m_points.remove(number);
        else
            m_points.insert(number, *point);
    }
    const auto pose = parsePose(
        {values.value("ptz/PAN", "0"), values.value("ptz/TILT", "0"), values.value("ptz/ZOOM", "0")});
    if (!pose || pose == m_filePose)
        return;
    const bool isFirst = !m_filePose;
    m_filePose = pose;
    if (!isFirst)
        return turnTo(*pose);
    m_pose = m_goal = *pose;
    Q_EMIT moved();
}

QString PtzState::execute(const QByteArray &line)
{
    const auto rest = [&line](QByteArrayView command) -> std::optional<QByteArray> {
        return line.startsWith(command) ? std::optional(line.mid(command.size())) : std::nullopt;
    };
    if (const auto number = rest("PTZ GOTO "))
        return goTo(*number);
    if (const auto point = rest("PTZ POINT "))
        return setPoint(*point);
    if (const auto pose = rest("PTZ MOVE "))
        return turnTo(*pose);
    return QStringLiteral("unknown command");
}

QString PtzState::goTo(const QByteArray &number)
{
    const std::optional<int> point = pointNumber(number);
    if (!point || !m_points.contains(*point))
        return QStringLiteral("there is no such point");
    const auto pose = parsePose(m_points.value(*point).split(',').mid(PlaceFields, PoseFields));
    if (!pose)
        return QStringLiteral("the point does not say where the camera looks");
    turnTo(*pose);
    return {};
}

QString PtzState::setPoint(const QByteArray &numberAndText)
{
    const qsizetype space = numberAndText.indexOf(' ');
    const std::optional<int> number = pointNumber(space < 0 ? numberAndText : numberAndText.left(space));
    const QByteArray text = space < 0 ? QByteArray() : numberAndText.mid(space + 1);
    if (!number)
        return QStringLiteral("points have the numbers 1 to %1").arg(MaxPoints);
    if (text.size() > MaxPointText)
        return QStringLiteral("the point is too long");
    if (!text.isEmpty() && !isPoint(text))
        return QStringLiteral("a point is two or five numbers with commas between them");
    if (text.isEmpty())
        m_points.remove(*number);
    else
        m_points.insert(*number, text);
    return {};
}

QString PtzState::turnTo(const QByteArray &pose)
{
    const std::optional<CameraPose> goal = parsePose(pose.split(','));
    if (!goal)
        return QStringLiteral("that is no place to look at");
    turnTo(*goal);
    return {};
}

void PtzState::turnTo(const CameraPose &goal)
{
    m_goal = goal;
    if (m_goal == m_pose)
        m_stepTimer.stop();
    else if (!m_stepTimer.isActive())
        m_stepTimer.start();
}

void PtzState::step()
{
    m_pose = {stepTowards(m_pose.pan, m_goal.pan), stepTowards(m_pose.tilt, m_goal.tilt),
              stepTowards(m_pose.zoom, m_goal.zoom)};
    if (m_pose == m_goal)
        m_stepTimer.stop();
    Q_EMIT moved();
}

} // namespace recorder
