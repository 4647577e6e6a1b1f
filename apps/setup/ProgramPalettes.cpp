#include "ProgramPalettes.h"

namespace paravue
{

namespace
{

struct Colors {
    QRgb window;
    QRgb text;
    QRgb base;
    QRgb button;
    QRgb line;
    QRgb disabledText;
    QRgb link;
};

QPalette palette(const Colors &colors)
{
    QPalette palette{QColor(colors.button), QColor(colors.window)};
    const QColor text(colors.text);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, QColor(colors.disabledText));
    }
    palette.setColor(QPalette::Base, QColor(colors.base));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(colors.window));
    palette.setColor(QPalette::AlternateBase, QColor(colors.window));
    palette.setColor(QPalette::ToolTipBase, QColor(colors.base));
    palette.setColor(QPalette::PlaceholderText, QColor(colors.disabledText));
    palette.setColor(QPalette::Mid, QColor(colors.line));
    palette.setColor(QPalette::Highlight, QColor(0x22, 0x66, 0x9c));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(colors.link));
    palette.setColor(QPalette::LinkVisited, QColor(colors.link));
    return palette;
}

} // namespace

QPalette lightPalette()
{
    return palette({.window = 0xffefefef,
                    .text = 0xff101010,
                    .base = 0xffffffff,
                    .button = 0xffefefef,
                    .line = 0xffb4b4b4,
                    .disabledText = 0xff6e6e6e,
                    .link = 0xff114d80});
}

QPalette darkPalette()
{
    return palette({.window = 0xff2b2d30,
                    .text = 0xffececec,
                    .base = 0xff1f2123,
                    .button = 0xff36393d,
                    .line = 0xff5c6066,
                    .disabledText = 0xff9a9da2,
                    .link = 0xff8cc4f5});
}

} // namespace paravue
