#include "HEXError.h"

HEXError::HEXError(const ComMsgMgrInstance &msg) : HEXAll(msg.format()), m_msg(msg) {}
