// Must not compile: the rewrite of board directories knows nothing of the
// scripted classes.
#include "HBOScriptCommands.h"
