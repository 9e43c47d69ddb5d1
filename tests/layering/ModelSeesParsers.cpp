// Must not compile: the model knows nothing of its readers.
#include "HBOBoardParser.h"
