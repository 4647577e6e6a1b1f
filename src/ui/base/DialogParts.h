#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QDialog;
class QElapsedTimer;
class QEvent;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;
class QWidget;

namespace paravue
{

/// What the window's own dialogs with lists have in common.
namespace dialogparts
{

/// A list of whole rows with these headings. Its columns have \a widths, or more where a heading needs it;
/// the last one takes the rest.
/// Screen readers call it \a name.
QTreeWidget *makeList(const QStringList &headings, const QList<int> &widths, const QString &name,
                      QWidget *parent);
/// \a text as the tool tip of a row. Texts come from a recorder or from an archive: markup in them is shown
/// as it is, and what is too long for a screen is cut.
QString rowToolTip(const QString &text);
/// A row with these texts, also as tool tips, as narrow columns cut them.
QTreeWidgetItem *makeRow(const QStringList &texts);
/// Replaces the rows of \a list. The first one is selected.
void setRows(QTreeWidget &list, const QList<QTreeWidgetItem *> &rows);

/// Ticks the selected rows that have a check box in \a column, or unticks them, when \a event is the press of
/// Space. A list does that by itself only where the box is in the current column. True when it was.
bool toggleWithSpace(const QTreeWidget &list, int column, const QEvent &event);

/// Rows of \a list are ticked and unticked in \a column together with those of the same group, as a whole.
/// \a groups are by row; a row with an empty one has its tick for itself. To be called when the rows are
/// there.
void checkTogether(QTreeWidget &list, int column, const QStringList &groups);

/// A button for what a dialog does with a selected row.
QToolButton *makeButton(const QString &text, const QString &toolTip, const char *name, QWidget *parent);

/// True for Enter while it is held down, and for as long after \a shown was started as a second click would
/// make a double click.
bool isSecondEnter(const QEvent &event, const QElapsedTimer &shown);

/// Second presses of Enter (isSecondEnter()) do nothing in \a dialog, counted from when it is shown. To be
/// called when its buttons are there and before it is shown, for a dialog that opens by itself behind the
/// user's Enter: a second, impatient one must not answer what nobody has read.
void ignoreSecondEnter(QDialog &dialog);

QVBoxLayout *makeLayout(QDialog &dialog);
/// To be called once, when all of \a dialog is made: its looks and its frame.
void finish(QDialog &dialog);

} // namespace dialogparts

} // namespace paravue
