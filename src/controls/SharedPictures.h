#pragma once

namespace paravue
{

/// Registers the pictures that several parts of the program show (":/icons/resources/settings.png"), which a
/// static library does not do by itself. May be called more than once.
void registerSharedPictures();

} // namespace paravue
