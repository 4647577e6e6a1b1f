#include "device/login/DefaultCredentialsSource.h"

#include "device/login/Credentials.h"

namespace paravue
{

// Nothing else may be defined in this file: see the header.
std::shared_ptr<CredentialsSource> defaultCredentialsSource()
{
    return nullptr;
}

} // namespace paravue
