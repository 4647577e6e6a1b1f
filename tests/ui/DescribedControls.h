#pragma once

#include "DescribedWindow.h"
#include "controls/OrbProgressPie.h"

#include <QCheckBox>
#include <QTabWidget>
#include <QTreeWidget>

/// Controls on the page of a DescribedWindow, and a file that they show.
namespace paravue::test
{

inline const QByteArray Net = "MODE=b\nNAME='Gate 1'\nON=on\nOFF=off\nLEVEL=7\nTIME=20240331023000\nROWS=2\n"
                              "USER0=ann\nUSER1=bob\nSIZE=2G\nUSED='0.5 G'\nMASKED=12345\n";

/// The choices of a drop-down list for a value of this file.
inline const QByteArray Modes =
    "<text>Low<key>net/untitled/MODE/a</key></text><text>High<key>net/untitled/MODE/b</key></text>";

/// The control that carries the number \a number.
inline QWidget *control(const DescribedWindow &window, int number)
{
    for (QWidget *widget : window.page()->findChildren<QWidget *>()) {
        if (widget->accessibleName() == QStringLiteral("link%1").arg(number))
            return widget;
    }
    return nullptr;
}

/// What it shows, in words.
inline QString shown(const DescribedWindow &window, int number = 1)
{
    QWidget *widget = control(window, number);
    if (auto *box = qobject_cast<QCheckBox *>(widget))
        return (box->isChecked() ? "[x] " : "[ ] ") + box->text();
    if (auto *pie = qobject_cast<OrbProgressPie *>(widget))
        return QString::number(pie->progress()) +
               (pie->limit() % 100 ? QStringLiteral(" of %1").arg(pie->limit()) : QString());
    if (auto *tabs = qobject_cast<QTabWidget *>(widget))
        return tabs->tabText(tabs->currentIndex());
    QStringList rows;
    if (auto *list = qobject_cast<QTreeWidget *>(widget)) {
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < list->columnCount(); ++column)
                cells << list->topLevelItem(row)->text(column);
            rows << cells.join(u'|');
        }
        return rows.join(u'/');
    }
    // A progress bar has a text besides its value.
    for (const char *name : {"value", "currentText", "text"}) {
        const QVariant property = widget->property(name);
        if (property.isValid())
            return property.toString();
    }
    return {};
}

} // namespace paravue::test
