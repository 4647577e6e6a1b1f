#include "ui/binding/ControlContext.h"

#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/BuiltDescription.h"

#include <utility>

namespace paravue
{

ControlContext::ControlContext(OrbSetup &store, BuiltDescription &description,
                               std::function<void(const QString &)> report)
    : m_store(store), m_description(description), m_report(std::move(report))
{
    startOver();
}

template <class Resolve>
QString ControlContext::resolved(const QString &raw, Resolve resolve)
{
    constexpr qsizetype Excerpt = 60;
    if (!take(Characters, raw.size()))
        return raw.left(Excerpt);
    const ResolvedText resolved = resolve();
    if (!resolved.withinLimits) {
        reportOnce(WindowText::tr("A text of the interface description is too large: \"%1\"")
                       .arg(raw.left(Excerpt)));
        return raw.left(Excerpt);
    }
    return take(Characters, resolved.text.size()) ? resolved.text : raw.left(Excerpt);
}

QString ControlContext::text(const Control &control, const QString &raw)
{
    return resolved(raw, [&] {
        ResolvedText resolved = m_description.texts().resolve(raw);
        for (const QString &address : std::as_const(resolved.addresses))
            m_description.table().addDependency(control, address);
        return resolved;
    });
}

QString ControlContext::text(const QString &raw)
{
    return resolved(raw, [&] { return m_description.texts().resolve(raw); });
}

QString ControlContext::value(const Control &control, const QString &address)
{
    watch(control, address);
    return m_store->value(address);
}

void ControlContext::watch(const Control &control, const QString &address)
{
    m_description.table().addDependency(control, address);
}

void ControlContext::reportOnce(const QString &message)
{
    const auto known = m_reported.size();
    m_reported.insert(message);
    if (m_reported.size() > known)
        m_report(message);
}

bool ControlContext::take(Resource resource, qsizetype amount)
{
    if (amount <= m_left[resource]) {
        m_left[resource] -= amount;
        return true;
    }
    // The rest of the operation fails at once instead of trying each part.
    m_left[resource] = 0;
    if (!std::exchange(m_isExhausted, true))
        reportOnce(WindowText::tr("The interface description is too large; a part of it is not shown"));
    return false;
}

void ControlContext::startOver()
{
    m_left = {limits::TotalText, limits::TotalListCells, limits::TotalGridLines, limits::TotalItems};
    m_isExhausted = false;
}

} // namespace paravue
