#include "device/login/cDlg.h"
