#pragma once

#include "capi/Library.h"

#include <QString>

#include <optional>

namespace paravue::capi
{

/// A text of the host. Nothing for a null pointer, for bytes that are not UTF-8, and for a zero byte within
/// it, which no value of a recorder can hold.
std::optional<QString> readText(const char *text, size_t length);
/// The same; a null pointer is an empty text.
std::optional<QString> readOptionalText(const char *text, size_t length);

/// Writes \a text into a buffer of the host, as paravue_store_get_value() describes.
paravue_result writeText(Library &library, const QString &text, char *buffer, size_t capacity,
                         size_t *length);

} // namespace paravue::capi
