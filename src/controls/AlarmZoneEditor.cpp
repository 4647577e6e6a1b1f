#include "controls/AlarmZoneEditor.h"

#include <array>

namespace paravue
{
namespace
{

constexpr int UsualZones = 4;

struct ZoneLook {
    QRgb tint;
    int lines;
};

// No two zones have the same lines.
constexpr std::array<ZoneLook, 9> Looks{{{0xe02020, CellLook::Rising},
                                         {0x2060e0, CellLook::Falling},
                                         {0x10a040, CellLook::Level},
                                         {0xe0a000, CellLook::Upright},
                                         {0xa030c0, CellLook::Rising | CellLook::Falling},
                                         {0x00a0a8, CellLook::Level | CellLook::Upright},
                                         {0xe05090, CellLook::Rising | CellLook::Level},
                                         {0x805020, CellLook::Falling | CellLook::Upright},
                                         {0x606060, CellLook::Falling | CellLook::Level}}};

} // namespace

AlarmZoneEditor::AlarmZoneEditor(const QSize &size, QWidget *parent) : CellGridEditor(size, parent)
{
    setKinds(usualNames());
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

CellLook AlarmZoneEditor::look(int mark) const
{
    const ZoneLook &zone = Looks[size_t(mark - 1) % Looks.size()];
    QColor tint(zone.tint);
    tint.setAlpha(110);
    return {tint, CellLook::Lines(zone.lines), QString::number(mark)};
}

QString AlarmZoneEditor::markName(int mark) const
{
    const QString name = kinds().value(mark - 1);
    return name.isEmpty() ? tr("Zone %1").arg(QString::number(mark)) : name;
}

} // namespace paravue
