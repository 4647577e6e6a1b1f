#include "controls/SharedPictures.h"

#include <QtGlobal>

// Q_INIT_RESOURCE() has to be used outside of all namespaces.
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
