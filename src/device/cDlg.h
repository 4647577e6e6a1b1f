#include "device/dialog/cDlg.h"
