// Compiled with the module's include path: a workbench header must not be found there.
#include "workbench/data/DataFile.h"
