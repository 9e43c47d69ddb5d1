// Control: the model's own headers and the platform's compile in the model.
#include "HBOBoard.h"
#include "HPAParamMgr.h"
