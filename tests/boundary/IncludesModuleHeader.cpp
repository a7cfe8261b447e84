// Compiled with the module's include path: a module header is found from the module's folder.
#include "host/HostServices.h"
#include "core/CDrillDown.h"
