#include "controls/SharedPictures.h"

#include <QtGlobal>

// Must stand outside of every namespace.
static void initPictures()
{
    Q_INIT_RESOURCE(shared_pictures);
}

namespace paravue
{

void registerSharedPictures()
{
    initPictures();
}

} // namespace paravue
