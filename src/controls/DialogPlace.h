#pragma once

#include "controls/KeptPlace.h"

#include <QObject>
#include <QPointer>

class QDialog;
class QWidget;

namespace paravue
{

/// Puts a dialog in the middle of the window that it belongs to, or of the screen when there is none, and
/// never beyond the edges of the screen. Qt's own placing uses the size that a dialog has before its texts
/// are laid out, and the position that its window has at this moment, which may be wrong.
class DialogPlace : public QObject
{
public:
    /// To be called once; \a dialog is placed whenever it is shown.
    static void keepCentred(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogPlace(QDialog &dialog);
    void place();

    QDialog &m_dialog;
    QPointer<QWidget> m_above;
    KeptPlace m_place;
};

} // namespace paravue
