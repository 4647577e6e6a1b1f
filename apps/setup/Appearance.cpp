#include "Appearance.h"

#include "ProgramPalettes.h"

#include <QApplication>
#include <QStyle>

#include <utility>

namespace paravue
{

namespace
{

// Windows draws its controls, in light colours only.
const QString LightOnlyStyle = QStringLiteral("windowsvista");

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace

Appearance::Appearance(ColorScheme scheme) : m_desktopStyle(QApplication::style()->name())
{
    if (scheme != ColorScheme::Desktop) {
        show(scheme);
        return;
    }
    m_colors = std::make_unique<DesktopColors>();
    connect(m_colors.get(), &DesktopColors::found, this,
            [this](bool prefersDark) { show(prefersDark ? ColorScheme::Dark : ColorScheme::Desktop); });
    m_colors->ask();
}

void Appearance::show(ColorScheme scheme)
{
    if (std::exchange(m_shown, scheme) == scheme)
        return;
    const bool wantsDark = scheme == ColorScheme::Dark;
    if (m_desktopStyle.compare(LightOnlyStyle, Qt::CaseInsensitive) == 0)
        QApplication::setStyle(wantsDark ? QStringLiteral("Fusion") : m_desktopStyle);
    QApplication::setPalette(QPalette()); // that of the desktop
    if (scheme != ColorScheme::Desktop && isDark(QApplication::palette()) != wantsDark)
        QApplication::setPalette(wantsDark ? darkPalette() : lightPalette());
}

} // namespace paravue
