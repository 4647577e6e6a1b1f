#include "device/login/DefaultCredentialsSource.h"

#include "device/dialog/Authorization.h"

namespace paravue
{

std::shared_ptr<CredentialsSource> defaultCredentialsSource()
{
    return std::make_shared<CredentialsDialogs>();
}

} // namespace paravue
