#include "device/login/Credentials.h"
