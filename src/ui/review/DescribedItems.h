#pragma once

#include "ui/binding/ControlAdapter.h"
#include "ui/review/DescribedAddress.h"

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace paravue
{

class ControlContext;
class InterfaceDocument;

/// A control with an action that opens a dialog.
struct DialogOpener {
    QDomElement element;
    int dialog = -1;        ///< that it stands in; -1 in the window
    bool opensOnly = false; ///< a button that does nothing else
};

struct DescribedDialog {
    QDomElement element;
    QString title;
    QString tag; ///< opens it; empty when others come first for all of its tags
    QList<DialogOpener> openers = {};
};

/// A control as the description has it.
struct DescribedItem {
    QDomElement element;
    const ControlAdapter *adapter = nullptr;
    int dialog = -1;   ///< index of the dialog that it stands in; -1 in the window
    QStringList pages; ///< the captions of the tabs that it stands on, from the outside in
    QString group;     ///< the heading above it
    /// Of a label, and of any item in a dialog: what the user would call it. Empty for a value without a
    /// label of its own, as in a table.
    QString caption;

    /// Where it stands, for lists.
    QString place(const QList<DescribedDialog> &dialogs) const;
    /// \a valueName is that of one of several values, as ControlAdapter::valueName().
    QString fullCaption(const QList<DescribedDialog> &dialogs, const QString &valueName) const;
};

/// All controls that a description has on its pages and in its dialogs, in the order of the document, whether
/// they were built or not. Their texts are those of the moment.
class DescribedItems
{
public:
    DescribedItems(ControlContext &context, AdapterLookup adapterOf);

    const std::vector<DescribedItem> &items() const { return m_items; }
    const QList<DescribedDialog> &dialogs() const { return m_dialogs; }
    /// The item in a dialog that edits the value at \a path; null without one. Takes the same time for any
    /// number of single values.
    const DescribedItem *editorInDialog(const QString &path) const;

private:
    class Reader;

    QHash<QString, int> findTags(const InterfaceDocument &document);

    std::vector<DescribedItem> m_items;
    QList<DescribedDialog> m_dialogs;
    QHash<QString, int> m_editors;                               ///< of single values in dialogs, by path
    std::vector<std::pair<DescribedAddress, int>> m_listEditors; ///< of several values
};

} // namespace paravue
