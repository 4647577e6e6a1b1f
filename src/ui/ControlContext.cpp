#include "ui/ControlContext.h"

#include "store/OrbSetup.h"
#include "ui/ControlTable.h"
#include "ui/TextResolver.h"

#include <QCoreApplication>

#include <utility>

namespace paravue
{

ControlContext::ControlContext(OrbSetup &store, TextResolver &texts, ControlTable &table,
                               std::function<void(const QString &)> report)
    : m_store(store), m_texts(texts), m_table(table), m_report(std::move(report))
{
}

QString ControlContext::text(const Control &control, const QString &raw)
{
    const ResolvedText resolved = m_texts.resolve(raw);
    for (const QString &address : resolved.addresses)
        m_table.addDependency(control, address);
    return withinLimits(resolved.text, resolved.withinLimits);
}

QString ControlContext::text(const QString &raw)
{
    const ResolvedText resolved = m_texts.resolve(raw);
    return withinLimits(resolved.text, resolved.withinLimits);
}

QString ControlContext::value(const Control &control, const QString &address)
{
    watch(control, address);
    return m_store.value(address);
}

void ControlContext::watch(const Control &control, const QString &address)
{
    m_table.addDependency(control, address);
}

QString ControlContext::withinLimits(const QString &text, bool withinLimits)
{
    if (withinLimits)
        return text;
    report(QCoreApplication::translate("CWinMain", "A text of the interface description is too large: \"%1\"")
               .arg(text.left(60)));
    return text.left(60);
}

} // namespace paravue
