// The library's entry points: the module-wide context and the factory.

#include <dlfcn.h>

#include <memory>
#include <new>

#include "../automation/TypeLibrary.h"
#include "CDrillDown.h"
#include "ModuleEntry.h"

namespace {

// The module's own context: the host fills in its services before the first analysis.
class CDrillDownContext : public CAnalysisContext {};

CAnalysisContext* CreateContext() { return new (std::nothrow) CDrillDownContext; }

} // namespace

CAnalysisContext* ModuleContext() {
    static const std::unique_ptr<CAnalysisContext> context(CreateContext());
    return context.get();
}

// The module handle: the address of the library's own code, from which the host can find
// the loaded file.
void* ModuleInstance() {
    static Dl_info info = [] {
        Dl_info found{};
        dladdr(reinterpret_cast<void*>(&ModuleContext), &found);
        return found;
    }();
    return info.dli_fbase;
}

extern "C" {

__attribute__((visibility("default"))) CAnalysisContext* Vmk6AnalysisContext() {
    return ModuleContext();
}

// The type library of the automation object is registered with the host's registry when an
// analysis is made: the host fills in its services after the library is loaded, so load time
// is too early, and a host may give new services to a module that stays loaded. A second
// registration replaces the first.
__attribute__((visibility("default"))) CAnalysisSupport* Vmk6NewAnalysis() {
    CAnalysisContext* context = ModuleContext();
    if (context != nullptr && context->Host.Automation != nullptr)
        RegisterDrillDownTypeLib(*context->Host.Automation);
    return new (std::nothrow) CDrillDown(nullptr);
}
}
