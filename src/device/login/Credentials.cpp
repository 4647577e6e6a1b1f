#include "device/login/Credentials.h"

namespace paravue
{

CredentialsSource::~CredentialsSource() = default;

} // namespace paravue
