#pragma once

#include "controls/KeptPlace.h"

#include <QPoint>
#include <QString>

class QDialog;
class QGridLayout;
class QPushButton;
class QSize;
class QSizeGrip;
class QWidget;

namespace paravue
{

class LoadingView;
class PageTabs;
class WindowHeader;

/// What every setup window has before there is a description: a header, a place for the pages, OK and Cancel,
/// and a grip in its corner. The widgets are the window's by Qt parent.
class WindowFrame
{
public:
    /// Fills \a window and gives it its first size and place. \a recorder is its title, which may be empty.
    WindowFrame(QDialog &window, const QString &recorder);

    WindowHeader *header() const { return m_header; }
    PageTabs *tabs() const { return m_tabs; }
    QPushButton *okButton() const { return m_ok; }
    QPushButton *cancelButton() const { return m_cancel; }

    /// Shown in the place of the pages until showPages(); created on the first call.
    LoadingView &loadingView();
    void showPages();
    /// Puts \a line beside OK and Cancel.
    void addStatusLine(QWidget *line);

    /// Gives the window this size as far as the screen has room for it, and puts it around \a middle, or as
    /// near to that as the edges of the screen allow.
    void place(const QSize &size, const QPoint &middle);
    /// The middle of the window; right after place() the one that it was asked to have, as the window system
    /// may report others for a while.
    QPoint middle() const;
    /// Puts the widgets below and above the pages behind them in the tab order: those of the status line, the
    /// buttons, and those of the header.
    void chainTabOrder();
    /// To be called whenever the window was resized.
    void placeGrip();

private:
    void createWidgets();
    void arrangeWidgets();
    void placeWindow();

    QDialog &m_window;
    QString m_recorder;
    QPoint m_middle; ///< where the window was last asked to stand
    KeptPlace m_place;
    WindowHeader *m_header = nullptr;
    QWidget *m_line = nullptr; ///< null without a status line
    QGridLayout *m_pages = nullptr;
    QGridLayout *m_buttons = nullptr;
    LoadingView *m_loading = nullptr; ///< created by the first load that takes a while
    PageTabs *m_tabs = nullptr;
    QPushButton *m_ok = nullptr;
    QPushButton *m_cancel = nullptr;
    QSizeGrip *m_grip = nullptr;
};

} // namespace paravue
