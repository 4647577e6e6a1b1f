#include "recorder/video/TestPicture.h"

#include <QRectF>
#include <QString>

#include <array>
#include <cmath>

namespace recorder
{

namespace
{

constexpr int ClockBlocks = 20;
constexpr int StripParts = 12; // the strip is a 12th of the height
constexpr qint64 DayMs = 24LL * 60 * 60 * 1000;

constexpr Colour Black = {0, 0, 0};
constexpr Colour White = {255, 255, 255};

/// The scene is everything that the camera can turn to. At zoom 0 the camera sees a unit square of it. At the
/// ends of pan and tilt an edge of the scene is in the middle of the picture; the boxes at the edge extend
/// beyond it.
constexpr double SceneWidth = 2.0;
constexpr double SceneHeight = 1.5;
constexpr double NearestSpan = 0.25;

struct Box {
    QRectF area;
    Colour colour;
};

/// Painted in this order, from back to front.
constexpr std::array Scene = {
    Box{{-0.5, -0.5, 3.00, 0.70}, {70, 120, 190}},    Box{{-0.5, 0.20, 3.00, 0.20}, {95, 145, 205}},
    Box{{-0.5, 0.40, 3.00, 0.20}, {125, 170, 215}},   Box{{-0.5, 0.60, 3.00, 0.15}, {165, 195, 220}},
    Box{{1.56, 0.16, 0.12, 0.12}, {250, 220, 120}},   Box{{-0.5, 0.75, 3.00, 0.20}, {85, 125, 70}},
    Box{{-0.5, 0.95, 3.00, 0.30}, {80, 82, 86}},      Box{{-0.5, 1.25, 3.00, 0.75}, {105, 140, 75}},
    Box{{-0.5, 0.93, 3.00, 0.02}, {160, 160, 155}},   Box{{-0.5, 1.25, 3.00, 0.02}, {160, 160, 155}},
    Box{{0.10, 0.50, 0.30, 0.43}, {165, 95, 75}},     Box{{0.14, 0.56, 0.07, 0.10}, {225, 215, 160}},
    Box{{0.28, 0.56, 0.07, 0.10}, {225, 215, 160}},   Box{{0.21, 0.75, 0.08, 0.18}, {70, 50, 45}},
    Box{{0.52, 0.30, 0.24, 0.63}, {120, 125, 140}},   Box{{0.56, 0.36, 0.16, 0.06}, {60, 75, 100}},
    Box{{0.56, 0.48, 0.16, 0.06}, {60, 75, 100}},     Box{{0.56, 0.60, 0.16, 0.06}, {60, 75, 100}},
    Box{{0.92, 0.58, 0.36, 0.35}, {205, 190, 150}},   Box{{0.96, 0.72, 0.18, 0.21}, {130, 45, 45}},
    Box{{1.18, 0.66, 0.06, 0.08}, {70, 95, 130}},     Box{{1.42, 0.62, 0.03, 0.31}, {90, 65, 45}},
    Box{{1.36, 0.48, 0.15, 0.20}, {50, 100, 55}},     Box{{1.64, 0.44, 0.28, 0.49}, {100, 120, 115}},
    Box{{1.69, 0.50, 0.07, 0.09}, {215, 225, 230}},   Box{{1.81, 0.50, 0.07, 0.09}, {215, 225, 230}},
    Box{{1.69, 0.66, 0.07, 0.09}, {215, 225, 230}},   Box{{0.82, 0.70, 0.015, 0.25}, {60, 60, 60}},
    Box{{0.805, 0.66, 0.045, 0.05}, {240, 225, 150}}, Box{{0.30, 1.30, 0.16, 0.06}, {125, 90, 60}},
    Box{{1.10, 1.32, 0.10, 0.10}, {60, 105, 60}},     Box{{1.70, 1.34, 0.14, 0.05}, {125, 90, 60}},
};

/// The origin is the lower left corner of the car.
constexpr std::array Car = {
    Box{{0.06, -0.14, 0.14, 0.07}, {150, 40, 45}},   Box{{0.00, -0.08, 0.28, 0.07}, {190, 50, 55}},
    Box{{0.08, -0.13, 0.05, 0.05}, {175, 205, 225}}, Box{{0.14, -0.13, 0.05, 0.05}, {175, 205, 225}},
    Box{{0.04, -0.03, 0.05, 0.05}, {25, 25, 28}},    Box{{0.19, -0.03, 0.05, 0.05}, {25, 25, 28}},
};

/// Converts coordinates of the scene into pixels.
class Projection
{
public:
    /// \a part is the part of the scene that fills the picture.
    Projection(const QRectF &part, QSize size) : m_part(part), m_size(size) {}

    QRect map(const QRectF &area) const
    {
        return QRect(QPoint(x(area.left()), y(area.top())),
                     QPoint(x(area.right()) - 1, y(area.bottom()) - 1));
    }

private:
    int x(double place) const
    {
        return int(std::lround((place - m_part.left()) / m_part.width() * m_size.width()));
    }
    int y(double place) const
    {
        return int(std::lround((place - m_part.top()) / m_part.height() * m_size.height()));
    }

    QRectF m_part;
    QSize m_size;
};

QRectF seenFrom(const CameraPose &pose)
{
    const double span = 1 - (1 - NearestSpan) * pose.zoom;
    const QPointF centre((1 + pose.pan) * SceneWidth / 2, (1 - pose.tilt) * SceneHeight / 2);
    return {centre - QPointF(span, span) / 2, QSizeF(span, span)};
}

void paintScene(PicturePainter &painter, const QRectF &part, qint64 time)
{
    constexpr qint64 CarPeriod = 8000;
    constexpr qint64 BlinkPeriod = 1000;
    constexpr double CarLength = 0.28;
    const Projection projection(part, painter.size());
    for (const Box &box : Scene)
        painter.fill(projection.map(box.area), box.colour);
    for (double dash = -0.46; dash < SceneWidth + 0.5; dash += 0.16)
        painter.fill(projection.map({dash, 1.095, 0.08, 0.012}), {225, 225, 215});
    const double progress = double(time % CarPeriod) / CarPeriod;
    const QPointF place(progress * (SceneWidth + CarLength) - CarLength, 1.17);
    for (const Box &box : Car)
        painter.fill(projection.map(box.area.translated(place)), box.colour);
    if (time % BlinkPeriod < BlinkPeriod / 2)
        painter.fill(projection.map({0.63, 0.27, 0.02, 0.03}), {235, 60, 50});
}

int stripTop(QSize size)
{
    return size.height() - size.height() / StripParts;
}

void paintStrip(PicturePainter &painter, qint64 timeOfDay)
{
    const QSize size = painter.size();
    const qint64 tenths = timeOfDay / 100;
    const auto edge = [&](int block) { return block * size.width() / ClockBlocks; };
    for (int block = 0; block < ClockBlocks; ++block) {
        const bool isSet = tenths >> (ClockBlocks - 1 - block) & 1;
        painter.fill(
            QRect(QPoint(edge(block), stripTop(size)), QPoint(edge(block + 1) - 1, size.height() - 1)),
            isSet ? White : Black);
    }
}

/// Each segment is a rectangle (left, top, right, bottom) on a grid of 4 by 8 units.
constexpr std::array<std::array<int, 4>, 7> Segments = {{
    {0, 0, 4, 1}, // top
    {3, 0, 4, 4}, // upper right
    {3, 4, 4, 8}, // lower right
    {0, 7, 4, 8}, // bottom
    {0, 4, 1, 8}, // lower left
    {0, 0, 1, 4}, // upper left
    {0, 3, 4, 5}, // middle
}};

/// The segments of each digit; the first segment is the lowest bit.
constexpr std::array<int, 10> DigitSegments = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};

class DigitPainter
{
public:
    DigitPainter(PicturePainter &painter, QPoint place, int height)
        : m_painter(painter), m_place(place), m_height(height)
    {
    }

    static int widthOf(char character, int height)
    {
        return isDigit(character) ? height * 11 / 16 : height * 5 / 16;
    }

    void paint(char character)
    {
        if (isDigit(character)) {
            for (size_t segment = 0; segment < Segments.size(); ++segment) {
                const auto [left, top, right, bottom] = Segments[segment];
                if (DigitSegments[size_t(character - '0')] >> segment & 1)
                    bar(left, top, right, bottom);
            }
        } else {
            bar(0, 7, 1, 8);
            if (character == ':')
                bar(0, 2, 1, 3);
        }
        m_place.rx() += widthOf(character, m_height);
    }

private:
    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    void bar(int left, int top, int right, int bottom)
    {
        const QPoint first(left * m_height / 8, top * m_height / 8);
        const QPoint last(right * m_height / 8 - 1, bottom * m_height / 8 - 1);
        m_painter.fill(QRect(m_place + first, m_place + last), White);
    }

    PicturePainter &m_painter;
    QPoint m_place;
    int m_height;
};

void paintDigits(PicturePainter &painter, qint64 timeOfDay)
{
    const qint64 seconds = timeOfDay / 1000;
    const QByteArray text =
        QString::asprintf("%02d:%02d:%02d.%d", int(seconds / 3600), int(seconds / 60 % 60), int(seconds % 60),
                          int(timeOfDay / 100 % 10))
            .toLatin1();
    const QSize size = painter.size();
    // Bars of one pixel at least, and never wider than the picture.
    const int height = std::max(8, std::min(size.height() / 10, size.width() / 8));
    int width = 0;
    for (const char character : text)
        width += DigitPainter::widthOf(character, height);
    const int margin = height / 4;
    const QPoint place((size.width() - width) / 2, stripTop(size) - height - 2 * margin);
    painter.fill(QRect(place, QSize(width, height)).adjusted(-margin, -margin, 0, margin), {20, 24, 30});
    DigitPainter digits(painter, place, height);
    for (const char character : text)
        digits.paint(character);
}

} // namespace

void paintTestPicture(PicturePainter &painter, const CameraPose &pose, qint64 time)
{
    const qint64 timeOfDay = (time % DayMs + DayMs) % DayMs;
    paintScene(painter, seenFrom(pose), timeOfDay);
    paintDigits(painter, timeOfDay);
    paintStrip(painter, timeOfDay);
}

void paintOverview(PicturePainter &painter, qint64 time)
{
    paintScene(painter, {0, 0, SceneWidth, SceneHeight}, (time % DayMs + DayMs) % DayMs);
}

} // namespace recorder
