#pragma once

#include <QString>

#include <functional>

class QDomElement;

namespace paravue
{

class PageTabs;

/// Gives the pages that were built from the "tab" children of \a container their captions; \a visible turns a
/// caption into what the user sees. Returns true when one has changed.
bool showTabCaptions(const QDomElement &container, PageTabs &tabs,
                     const std::function<QString(const QString &)> &visible);

} // namespace paravue
