#include "device/login/Credentials.h"

CredentialsSource::~CredentialsSource() = default;
