#pragma once

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <map>
#include <utility>

namespace paravue
{

class ControlAdapter;
class InterfaceDocument;

/// A widget that was made from an element of the description.
struct Control {
    int number = 0;
    QString name; ///< unique; the accessible name of the widget and the tag of the element's decoration
    QDomElement element;
    QPointer<QWidget> widget;
    const ControlAdapter *adapter = nullptr; ///< null for windows, which show no value
    bool loaded = false;                     ///< the first load is over
    QStringList watched;                     ///< file/section/key of every value that it shows
};

/// Relates elements of the description, their widgets, and the configuration addresses whose values the
/// widgets show. Every look-up takes constant time.
///
/// An element and its widget find each other through decorations of the document: the widget's accessible
/// name is a unique name, "link" and a number, and its element gets two children, an empty one with that name
/// as tag and a "controlWidget" whose attribute "address" is the control's number in this table.
class ControlTable
{
public:
    explicit ControlTable(InterfaceDocument &document);

    /// A new entry at the end of the build order. The reference stays valid until the entry is removed.
    Control &add(const QDomElement &element, const ControlAdapter *adapter);
    /// Sets the widget of the entry and adds the decorations of both.
    void attach(Control &control, QWidget *widget);

    Control *find(int number);
    Control *find(const QString &name);
    Control *of(const QWidget *widget);
    Control *of(const QDomElement &element);

    /// The numbers given since \a first that are still in the table, in build order.
    QList<int> numbersSince(int first) const;
    int nextNumber() const { return m_next; }

    /// The control shows the value at \a address from now on.
    void addDependency(const Control &control, const QString &address);
    /// The controls that show a value from \a path (file/section/key), in the order in which they came.
    QList<int> dependants(const QString &path) const { return m_dependants.value(path); }

    /// Forgets these controls and takes their decorations out of the document.
    void remove(const QList<int> &numbers);
    void clear();

private:
    void removeDecorations(const Control &control);

    InterfaceDocument &m_document;
    std::map<int, Control> m_controls;
    QHash<QString, QList<int>> m_dependants;      ///< by file/section/key
    QSet<std::pair<int, QString>> m_dependencies; ///< the same, to know what is there already
    int m_next = 0;
};

} // namespace paravue
