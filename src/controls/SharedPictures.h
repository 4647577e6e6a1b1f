#pragma once

namespace paravue
{

/// Makes the pictures that windows of several parts show (":/icons/resources/settings.png") available, as
/// often as it is called. Needed because a static library does not do so by itself.
void registerSharedPictures();

} // namespace paravue
