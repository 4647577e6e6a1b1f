#pragma once

class OrbSetup;
class QWidget;

namespace paravue
{

/// Closes the windows of one session as its user would, by Cancel: what stands in \a page, or without one the
/// windows of their own that \a setup has. False when there is none (yet).
bool closeSession(const OrbSetup &setup, const QWidget *page);

} // namespace paravue
