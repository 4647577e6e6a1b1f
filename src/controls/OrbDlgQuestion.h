#pragma once

#include <QHash>
#include <QMessageBox>
#include <QString>

class QWidget;

/// The one message box of the system: every question and every error of the setup window goes through it.
class OrbDlgQuestion
{
public:
    /// Shows \a text modally above \a parent (or on its own without one) and returns the button pressed; the
    /// escape button when the user closed it by other means, and NoButton when nobody answered (\a parent was
    /// destroyed meanwhile, or the application quits).
    ///
    /// \a text is shown as plain text that can be selected; "<br>" in it is a line break and other markup
    /// stays visible, since a part of the text may come from a recorder. A text that would make the box
    /// larger than a screen is shortened; the box then offers the whole of it under "Show Details...".
    ///
    /// \a defaultButton may be QMessageBox::NoButton. With \a doNotAskAgain the box has a check box "Do not
    /// ask again" that shows and receives its value; when it is already true, the box is not shown and the
    /// default button is returned.
    static QMessageBox::StandardButton Do(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                          const QString &text, QMessageBox::StandardButtons buttons,
                                          QMessageBox::StandardButton defaultButton,
                                          bool *doNotAskAgain = nullptr);

    /// Texts of buttons in place of the usual ones.
    using Captions = QHash<QMessageBox::StandardButton, QString>;

    /// As Do(), with an \a explanation of the text below it, unless it is empty.
    static QMessageBox::StandardButton
    DoExplained(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
                const QString &explanation, QMessageBox::StandardButtons buttons,
                QMessageBox::StandardButton defaultButton, bool *doNotAskAgain = nullptr,
                const Captions &captions = {});
};
