#include "device/login/cODAdaptor.h"
