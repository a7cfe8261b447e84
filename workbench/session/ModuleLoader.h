#pragma once
// Loads the drill-down module as a plug-in and manages the life of its analyses.
//
// Life cycle:
//   1. load(path): dlopen the library (RTLD_NOW | RTLD_LOCAL), look up its exports
//      Vmk6AnalysisContext and Vmk6NewAnalysis, and install the host's services into the
//      module's context. Throws ModuleError, naming the path, when any of this fails.
//      attach(entryPoints, name) does the same for a module linked into the program (the
//      tests and the benchmark, which also reach the module's internals).
//   2. openAnalysis(document): Vmk6NewAnalysis() makes an analysis, the host's document of
//      it (which must outlive it) is attached; its sequence table runs from
//      step 100 (binding the host's blocks, then starting the analysis). Throws ModuleError
//      when the module gives no analysis or the sequence gives 0; nothing stays open then.
//   3. closeAnalysis(a): the analysis's Close (its BeforeClose), then its virtual destructor.
//   4. unload(), or the destructor: closes the analyses still open, newest first, clears
//      the services from the module's context and closes the library.
// Every call into an analysis is preceded by its ContextEntry, which makes it the module's
// current analysis.
//
// The loader calls the analysis only through virtual functions, which run in the
// module, so the host needs none of the module's code linked into it.

#include <stdexcept>
#include <string>
#include <vector>

#include "drilldown/host/framework/CAnalysisSupport.h"
#include "drilldown/host/HostServices.h"

namespace wb {

class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The module's two exports (drilldown/core/ModuleEntry.h).
struct ModuleEntryPoints {
    CAnalysisContext* (*context)() = nullptr;
    CAnalysisSupport* (*newAnalysis)() = nullptr;
};

class ModuleLoader {
public:
    // Every service but Dialogs must be set (a module run without its panel needs none);
    // the caller keeps them alive while the module is loaded.
    explicit ModuleLoader(const HostServices& services) : m_services(services) {}
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // <directory of the running executable>/../lib/libdrilldown.so; the bare file name,
    // for dlopen's own search, when the executable's path cannot be read.
    static std::string defaultModulePath();

    // A second load or attach unloads the first module.
    void load(const std::string& path);
    // `name` stands for the module in messages.
    void attach(ModuleEntryPoints entryPoints, const std::string& name);
    bool isLoaded() const { return m_context != nullptr; }
    const std::string& path() const { return m_path; }

    CAnalysisSupport& openAnalysis(CAnalysisDoc* document = nullptr);
    void closeAnalysis(CAnalysisSupport& analysis);
    std::size_t analysisCount() const { return m_analyses.size(); }

    void unload();

private:
    void* symbol(const char* name) const;
    void checkServices(const std::string& name) const;
    void attachEntryPoints(ModuleEntryPoints entryPoints);
    static void destroy(CAnalysisSupport* analysis);

    HostServices m_services;
    std::string m_path;
    void* m_library = nullptr;
    CAnalysisContext* m_context = nullptr;
    CAnalysisSupport* (*m_newAnalysis)() = nullptr;
    std::vector<CAnalysisSupport*> m_analyses;
};

} // namespace wb
