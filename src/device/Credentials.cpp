#include "device/Credentials.h"

CredentialsSource::~CredentialsSource() = default;
