#pragma once

#include <QIcon>
#include <QMessageBox>

class QDialogButtonBox;
class QPalette;

namespace paravue
{

// The pictures of dialogs, in tones that are visible on the ground of \a palette.

/// A cross in the colour of the text.
QIcon closeIcon(const QPalette &palette);
/// Null for QMessageBox::NoIcon.
QIcon messageIcon(QMessageBox::Icon icon, const QPalette &palette);
/// Gives the buttons that accept and reject the check mark and the cross that OK and Cancel of the setup
/// window have, and the others none.
void setOwnIcons(const QDialogButtonBox &buttons);

} // namespace paravue
