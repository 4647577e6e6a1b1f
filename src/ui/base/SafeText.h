#pragma once

#include <QString>
#include <Qt>

/// Texts for widgets that understand rich text. All of them come from a recorder, which may ask for a picture
/// on some server: on a Windows desktop fetching it would send the user's credentials there.
namespace paravue
{

/// \a text itself when it is harmless, plain text of the same wording when it refers to anything outside.
QString safeRichText(const QString &text);
/// How a widget should read \a text.
Qt::TextFormat safeTextFormat(const QString &text);

} // namespace paravue
