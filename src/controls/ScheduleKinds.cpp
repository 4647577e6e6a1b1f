#include "controls/ScheduleKinds.h"

#include "controls/DrawnIcon.h"
#include "controls/ReadableColors.h"

#include <QCoreApplication>
#include <QPainter>

#include <array>

namespace paravue
{
namespace
{

// The palette of M. Okabe and K. Ito ("Color Universal Design", 2008), whose colours colour-blind people can
// distinguish as well. The first kind has the colour of the background.
constexpr std::array<QRgb, MaxScheduleKinds - 1> KindColors{0xff0072b2, 0xffe69f00, 0xffcc79a7, 0xff009e73,
                                                            0xffd55e00, 0xff56b4e9, 0xfff0e442};

constexpr double DisabledShare = 0.4;

class KindText
{
    Q_DECLARE_TR_FUNCTIONS(paravue::WeekSchedule)
};

} // namespace

ScheduleKinds usualScheduleKinds()
{
    return {{U'0', KindText::tr("Off")},
            {U'1', KindText::tr("Continuous")},
            {U'2', KindText::tr("On motion")},
            {U'3', KindText::tr("On alarm")}};
}

int kindNumber(const ScheduleKinds &kinds, char32_t value)
{
    for (int number = 0; number < kinds.size(); ++number) {
        if (kinds[number].value == value)
            return number;
    }
    return UnknownKind;
}

QColor kindColor(int number, const QPalette &palette, QPalette::ColorGroup group)
{
    const QColor page = palette.color(group, QPalette::Base);
    if (number < 1 || number >= MaxScheduleKinds)
        return page;
    const QColor color(KindColors[number - 1]);
    return group == QPalette::Disabled ? mixedColor(page, color, DisabledShare) : color;
}

void paintKind(QPainter &painter, const QRectF &rect, int number, const QPalette &palette,
               QPalette::ColorGroup group)
{
    const QColor background = kindColor(number, palette, group);
    painter.fillRect(rect, background);
    if (number == UnknownKind)
        painter.fillRect(rect,
                         QBrush(mixedColor(background, readableTextOn(background), 0.3), Qt::BDiagPattern));
}

QIcon kindIcon(int number, const QPalette &palette)
{
    return drawnIcon([number, palette](QPainter &painter, const QRectF &rect, QIcon::Mode mode,
                                       QIcon::State state) {
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QRectF sample = rect.adjusted(0.5, 0.5, -0.5, -0.5);
        paintKind(painter, sample, number, palette, group);
        painter.setPen(readableTextOn(kindColor(number, palette, group)));
        QFont font = painter.font();
        font.setPixelSize(qMax(1, qRound(rect.height() * 0.7)));
        painter.setFont(font);
        painter.drawText(sample, Qt::AlignCenter, QString::number(number));
        // Some styles hardly show which button is checked; the frame does.
        const bool isChosen = state == QIcon::On;
        painter.setPen(QPen(mixedColor(palette.color(group, QPalette::Button),
                                       palette.color(group, QPalette::ButtonText), isChosen ? 1 : 0.5),
                            isChosen ? 3 : 1));
        painter.drawRect(sample);
    });
}

} // namespace paravue
