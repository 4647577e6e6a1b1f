#pragma once

#include "DesktopColors.h"

#include <QObject>
#include <QString>

#include <memory>

namespace paravue
{

/// The colours of the program's windows.
enum class ColorScheme { Desktop, Light, Dark };

/// Sets the palette of the application: one of its own (ProgramPalettes.h), or what the desktop asks for, as
/// soon as that is known and whenever it changes. When the palette that Qt has from the desktop is light or
/// dark as wanted, that of a high-contrast theme for example, it stays.
class Appearance : public QObject
{
public:
    /// Asks the desktop only for ColorScheme::Desktop. Needs a QApplication, and must not outlive it.
    explicit Appearance(ColorScheme scheme);

private:
    void show(ColorScheme scheme);

    const QString m_desktopStyle;
    ColorScheme m_shown = ColorScheme::Desktop;
    std::unique_ptr<DesktopColors> m_colors;
};

} // namespace paravue
