// Must not compile: the diagrams are drawn from the model, not from the
// scripted classes that stand over it.
#include "HBOScriptCommands.h"
