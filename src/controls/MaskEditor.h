#pragma once

#include "controls/CellGridEditor.h"

namespace paravue
{

/// A mask over a camera's picture: the cells that are watched for motion, or the ones that are hidden. A cell
/// is masked when its character is a digit other than "0", and masking one writes "1".
class MaskEditor : public CellGridEditor
{
    Q_OBJECT

public:
    enum Purpose {
        Motion, ///< masked cells are tinted, so that the picture shows through
        Privacy ///< masked cells are covered
    };

    MaskEditor(const QSize &size, Purpose purpose, QWidget *parent = nullptr);

protected:
    bool isOfKind(int mark, int kind) const override;
    CellStyle markStyle(int mark) const override;
    QString markName(int mark) const override;

private:
    Purpose m_purpose;
};

} // namespace paravue
