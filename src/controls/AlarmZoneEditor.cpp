#include "controls/AlarmZoneEditor.h"

#include "controls/OwnTexts.h"

#include <array>

namespace paravue
{
namespace
{

constexpr int UsualZones = 4;

struct ZoneStyle {
    QRgb tint;
    int lines;
};

// No two zones have the same lines.
constexpr std::array<ZoneStyle, 9> ZoneStyles{{{0xe02020, CellStyle::Rising},
                                               {0x2060e0, CellStyle::Falling},
                                               {0x10a040, CellStyle::Level},
                                               {0xe0a000, CellStyle::Upright},
                                               {0xa030c0, CellStyle::Rising | CellStyle::Falling},
                                               {0x00a0a8, CellStyle::Level | CellStyle::Upright},
                                               {0xe05090, CellStyle::Rising | CellStyle::Level},
                                               {0x805020, CellStyle::Falling | CellStyle::Upright},
                                               {0x606060, CellStyle::Falling | CellStyle::Level}}};

} // namespace

AlarmZoneEditor::AlarmZoneEditor(const QSize &size, QWidget *parent) : CellGridEditor(size, parent)
{
    keepTranslated(*this, [this, usual = QStringList()]() mutable {
        if (kinds() == usual) // and none of a description
            setKinds(usual = usualNames());
    });
}

QStringList AlarmZoneEditor::usualNames()
{
    QStringList names;
    for (int zone = 1; zone <= UsualZones; ++zone)
        names.append(tr("Zone %1").arg(QString::number(zone)));
    return names;
}

bool AlarmZoneEditor::isOfKind(int mark, int kind) const
{
    return mark == kind;
}

CellStyle AlarmZoneEditor::markStyle(int mark) const
{
    const ZoneStyle &zone = ZoneStyles[size_t(mark - 1) % ZoneStyles.size()];
    QColor tint(zone.tint);
    tint.setAlpha(110);
    return {tint, CellStyle::Lines(zone.lines), QString::number(mark)};
}

QString AlarmZoneEditor::markName(int mark) const
{
    const QString name = kinds().value(mark - 1);
    return name.isEmpty() ? tr("Zone %1").arg(QString::number(mark)) : name;
}

} // namespace paravue
