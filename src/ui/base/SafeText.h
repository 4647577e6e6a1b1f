#pragma once

#include <QString>
#include <Qt>

/// Texts for widgets that interpret rich text. They come from a recorder and could refer to a picture on any
/// server; on Windows fetching it from a file share would send the user's credentials there.
namespace paravue
{

/// \a text itself, or the same words as plain text when it refers to an external resource.
QString safeRichText(const QString &text);
/// How a widget should read \a text.
Qt::TextFormat safeTextFormat(const QString &text);

} // namespace paravue
