// Must not compile: the catalog knows nothing of the scripted classes.
#include "HBOScriptCommands.h"
