#include "controls/ReadablePalette.h"

#include "controls/ReadableColors.h"

namespace paravue
{

namespace
{

// Styles lighten or darken the ground of a text a little.
constexpr double StyleMargin = 1.2;

void mend(QPalette &palette, QPalette::ColorGroup group, QPalette::ColorRole text, QPalette::ColorRole ground,
          double contrast)
{
    const QColor before = palette.color(group, text);
    const QColor background = palette.color(group, ground);
    const QColor opaque = mixedColor(background, before, before.alphaF());
    if (before.alpha() < 255 || contrastRatio(opaque, background) < contrast)
        palette.setColor(group, text, readableVersion(opaque, background, contrast * StyleMargin));
}

/// The text on a selection is what it was, mostly white, and the selection itself gets darker or lighter.
void mendSelection(QPalette &palette, QPalette::ColorGroup group)
{
    const QColor text = palette.color(group, QPalette::HighlightedText);
    const QColor selection = palette.color(group, QPalette::Highlight);
    if (contrastRatio(text, selection) >= ReadableContrast)
        return;
    const QColor readable = readableVersion(selection, text, ReadableContrast * StyleMargin);
    palette.setColor(group, QPalette::Highlight, readable);
}

/// Many dark palettes give separators a colour that is darker still.
void mendLines(QPalette &palette)
{
    constexpr double LeastOfLines = 1.4;
    const QColor window = palette.color(QPalette::Window);
    if (contrastRatio(palette.color(QPalette::Mid), window) < LeastOfLines)
        palette.setColor(QPalette::Mid, mixedColor(window, palette.color(QPalette::WindowText), 0.3));
}

} // namespace

QPalette readablePalette(const QPalette &palette)
{
    QPalette mended = palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        mendSelection(mended, group);
        mend(mended, group, QPalette::Link, QPalette::Window, ReadableContrast);
        mend(mended, group, QPalette::LinkVisited, QPalette::Window, ReadableContrast);
        const double placeholder = group == QPalette::Disabled ? VisibleContrast : ReadableContrast;
        mend(mended, group, QPalette::PlaceholderText, QPalette::Base, placeholder);
    }
    mendLines(mended);
    mend(mended, QPalette::Disabled, QPalette::WindowText, QPalette::Window, VisibleContrast);
    mend(mended, QPalette::Disabled, QPalette::Text, QPalette::Base, VisibleContrast);
    mend(mended, QPalette::Disabled, QPalette::ButtonText, QPalette::Button, VisibleContrast);
    return mended;
}

QColor fieldEdgeColor(const QPalette &palette)
{
    const QColor window = palette.color(QPalette::Window);
    const QColor line = mixedColor(window, palette.color(QPalette::WindowText), 0.45);
    const QColor onWindow = readableVersion(line, window, VisibleContrast * StyleMargin);
    return readableVersion(onWindow, palette.color(QPalette::Base), VisibleContrast);
}

QColor markColor(const QPalette &palette)
{
    return readableVersion(palette.color(QPalette::Active, QPalette::Highlight),
                           palette.color(QPalette::Window), VisibleContrast * StyleMargin);
}

QColor problemColor(const QPalette &palette)
{
    return readableVersion(QColor(0xC0, 0x20, 0x20), palette.color(QPalette::Window));
}

} // namespace paravue
