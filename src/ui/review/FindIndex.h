#pragma once

#include <QList>
#include <QString>

#include <vector>

class OrbSetup;

namespace paravue
{

class ChangeList;
class ControlTable;
class FieldProblems;

/// What the controls of a window say and hold, to be searched: captions, tool tips, choices, addresses and
/// values, but no secrets. Built once for each search, it is looked through at every key.
class FindIndex
{
public:
    FindIndex(ControlTable &controls, OrbSetup &store, const ChangeList &changes,
              const FieldProblems &problems);

    struct Entry {
        int control = 0; ///< number in the table
        QString caption; ///< behind the captions of its pages
        QString value;
        QString address;
        bool isChanged = false;
        bool hasProblem = false; ///< what the field holds is marked as wrong
        QString text;            ///< everything that is searched, in small letters
    };

    enum Filter { Everything = 0, ChangedOnly = 1, WithProblems = 2 };
    Q_DECLARE_FLAGS(Filters, Filter)

    /// The entries that hold all words of \a query and pass \a filters, in the order of the window. Valid as
    /// long as the index.
    QList<const Entry *> find(const QString &query, Filters filters = Everything) const;

private:
    std::vector<Entry> m_entries;
};

} // namespace paravue
