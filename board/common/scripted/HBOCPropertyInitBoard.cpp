#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

// Placeholder until the property table is written.
void HBOCPropertyInit::board::init() {}
