#pragma once

#include "ui/binding/ControlTable.h"
#include "ui/description/EnableTargets.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"

#include <QList>
#include <QString>

#include <optional>

class OrbSetup;

namespace paravue
{

/// A description and what was built from it: the document, the table of its controls, and its texts.
class BuiltDescription
{
public:
    /// The texts may show values of \a store, which must outlive the object.
    explicit BuiltDescription(OrbSetup &store);
    BuiltDescription(const BuiltDescription &) = delete;
    BuiltDescription &operator=(const BuiltDescription &) = delete;

    const InterfaceDocument &document() const { return m_document; }
    ControlTable &table() { return m_table; }
    const TextResolver &texts() const { return m_texts; }

    /// What the present description may enable.
    const EnableTargets &enableTargets();

    /// Replaces the description; nothing is built yet, and the table of controls is cleared.
    void replace(const InterfaceDocument &document);

    /// The widgets of the elements that have a child with this tag, in the order of the document.
    QList<QWidget *> widgets(const QString &tag);
    /// The first of them that is a \a Widget; null without one.
    template <class Widget>
    Widget *firstWidget(const QString &tag)
    {
        for (QWidget *candidate : widgets(tag)) {
            if (auto *widget = qobject_cast<Widget *>(candidate))
                return widget;
        }
        return nullptr;
    }

private:
    InterfaceDocument m_document;
    std::optional<EnableTargets> m_enableTargets; ///< found when it is asked for
    ControlTable m_table;
    TextResolver m_texts;
};

} // namespace paravue
