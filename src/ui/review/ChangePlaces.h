#pragma once

#include <QList>
#include <QString>
#include <QTabWidget>

namespace paravue
{

class ControlTable;
struct Control;

/// Calls \a visit with each page above \a widget and its tabs, from the inside out.
template <typename Visit>
void visitPages(QWidget &widget, Visit visit)
{
    QWidget *page = &widget;
    for (QWidget *above = page->parentWidget(); above && !page->isWindow(); above = above->parentWidget()) {
        auto *tabs = above->parentWidget() ? qobject_cast<QTabWidget *>(above->parentWidget()) : nullptr;
        if (tabs && tabs->indexOf(page) >= 0)
            visit(*tabs, tabs->indexOf(page));
        page = above;
    }
}

/// Tabs hide their pages but for one, which the user can choose.
bool isPage(const QWidget &widget);
/// False for a control that is disabled or hidden, or stands in something hidden. The page may be another one
/// than that which is shown.
bool canBeUsed(const QWidget &control);

/// Where in the window a value is edited.
class ChangePlaces
{
public:
    explicit ChangePlaces(ControlTable &table) : m_table(table) {}

    /// The controls that write the value at \a path ("file/section/key"), in the order of the window. Those
    /// of dialogs that are not open do not exist.
    QList<const Control *> editors(const QString &path) const;
    /// True for a field that hides what is typed, and for what the description marks as secret.
    static bool isSecretField(const Control &control);
    /// What the user would call \a control, behind the captions of the pages that it stands on. With
    /// \a valueName the same for one of several values that it edits, as ControlAdapter::valueName().
    static QString caption(const Control &control, const QString &valueName = {});
    /// Opens the pages that \a control stands on and gives it the focus.
    static void show(const Control &control);

private:
    ControlTable &m_table;
};

} // namespace paravue
