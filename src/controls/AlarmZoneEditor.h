#pragma once

#include "controls/CellGridEditor.h"

namespace paravue
{

/// Numbered alarm zones over a camera's picture. The character of a cell is the number of its zone, 1 to 9; a
/// cell belongs to one zone at most. Cells of a zone without a name show its number and stay in it until they
/// are painted over.
class AlarmZoneEditor : public CellGridEditor
{
    Q_OBJECT

public:
    explicit AlarmZoneEditor(const QSize &size, QWidget *parent = nullptr);

    /// "Zone 1" and so on.
    static QStringList usualNames();

protected:
    bool isOfKind(int mark, int kind) const override;
    CellStyle markStyle(int mark) const override;
    QString markName(int mark) const override;
};

} // namespace paravue
