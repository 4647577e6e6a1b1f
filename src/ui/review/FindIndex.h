#pragma once

#include <QDomElement>
#include <QList>
#include <QString>

#include <vector>

class QWidget;

namespace paravue
{

class ChangeList;
class ControlContext;
class DescribedItems;
class FieldProblems;
struct Control;
struct DescribedItem;

/// What the controls of a description say and hold, to be searched: captions, headings, tool tips, choices,
/// addresses and values, but no secrets. Those of dialogs are there whether the dialog is open or not. Built
/// once for each search, it is looked through at every key.
class FindIndex
{
public:
    /// With \a dialog only what stands in this open dialog is there.
    FindIndex(ControlContext &context, const DescribedItems &described, const ChangeList &changes,
              const FieldProblems &problems, const QWidget *dialog = nullptr);

    struct Entry {
        int control = -1;    ///< number in the table; -1 for an element of a dialog that is not open
        QDomElement element; ///< of such a one
        int dialog = -1;     ///< index of its dialog
        QString caption;
        QString place; ///< the tabs that it stands on, or the dialog
        QString group; ///< the heading above it
        QString value;
        QString address;
        bool isChanged = false;
        bool hasProblem = false; ///< what the field holds is marked as wrong
        QString text;            ///< everything that is searched, in small letters
    };

    enum Filter { Everything = 0, ChangedOnly = 1, WithProblems = 2 };
    Q_DECLARE_FLAGS(Filters, Filter)

    /// The entries that hold all words of \a query and pass \a filters, in the order of the window, those of
    /// dialogs behind the others. Valid as long as the index.
    QList<const Entry *> find(const QString &query, Filters filters = Everything) const;

private:
    void addControl(const Control &control, const DescribedItem &item);
    void addDescribed(const DescribedItem &item);
    bool hasSecret(const QStringList &paths) const;
    void add(Entry entry, QStringList texts, const QStringList &paths, bool isSecret);

    ControlContext &m_context;
    const DescribedItems &m_described;
    const ChangeList &m_changes;
    const FieldProblems &m_problems;
    std::vector<Entry> m_entries;
};

} // namespace paravue
