#pragma once

#include <QString>

class QWidget;

namespace paravue
{

/// What the user would call \a control, as plain text: its own caption (of a window: the title), else the
/// text of the label whose buddy it is, of the one directly left of it in its grid, or of the one above it,
/// else its tool tip; empty without any of them.
QString controlName(const QWidget &control);

/// A text of the description without its markup, in one line.
QString plainText(const QString &text, Qt::TextFormat format = Qt::AutoText);

/// A caption without the marks of its access key: "&Save && close" is "Save & close".
QString withoutAccessKey(const QString &caption);

QString plainToolTip(const QWidget &control);

/// Discards the labels of a page, which are collected when the first name is asked for; needed when its grids
/// change.
void forgetLabels(QWidget &page);

} // namespace paravue
