#include "ui/binding/BuiltDescription.h"

namespace paravue
{

BuiltDescription::BuiltDescription(OrbSetup &store) : m_table(m_document), m_texts(m_document, store) {}

void BuiltDescription::replace(const InterfaceDocument &document)
{
    m_table.clear();
    m_document = document;
    m_enableTargets.reset();
}

const EnableTargets &BuiltDescription::enableTargets()
{
    if (!m_enableTargets)
        m_enableTargets.emplace(m_document);
    return *m_enableTargets;
}

QList<QWidget *> BuiltDescription::widgets(const QString &tag)
{
    QList<QWidget *> widgets;
    for (const QDomElement &element : m_document.elements(tag)) {
        const Control *control = m_table.of(element.parentNode().toElement());
        if (control && control->widget)
            widgets.append(control->widget);
    }
    return widgets;
}

} // namespace paravue
