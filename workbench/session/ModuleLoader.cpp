#include "workbench/session/ModuleLoader.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace wb {

namespace {

constexpr const char* ModuleFileName = "libdrilldown.so";
constexpr int FirstStep = 100;

std::string dlerrorText() {
    const char* error = dlerror();
    return error != nullptr ? error : "unknown error";
}

} // namespace

ModuleLoader::~ModuleLoader() {
    unload();
}

std::string ModuleLoader::defaultModulePath() {
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        return ModuleFileName;
    return (executable.parent_path() / ".." / "lib" / ModuleFileName).lexically_normal().string();
}

void* ModuleLoader::symbol(const char* name) const {
    dlerror();
    void* address = dlsym(m_library, name);
    if (address == nullptr)
        throw ModuleError("module " + m_path + " has no " + name + ": " + dlerrorText());
    return address;
}

void ModuleLoader::checkServices(const std::string& name) const {
    if (m_services.Memory == nullptr || m_services.Messages == nullptr ||
        m_services.Progress == nullptr || m_services.Data == nullptr || m_services.Text == nullptr)
        throw ModuleError("cannot load module " + name + ": the host's services are incomplete");
}

void ModuleLoader::load(const std::string& path) {
    unload();
    checkServices(path);
    m_library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_library == nullptr)
        throw ModuleError("cannot load module " + path + ": " + dlerrorText());
    m_path = path;
    try {
        ModuleEntryPoints entryPoints;
        entryPoints.context =
            reinterpret_cast<decltype(entryPoints.context)>(symbol("Vmk6AnalysisContext"));
        entryPoints.newAnalysis =
            reinterpret_cast<decltype(entryPoints.newAnalysis)>(symbol("Vmk6NewAnalysis"));
        attachEntryPoints(entryPoints);
    } catch (...) {
        unload();
        throw;
    }
}

void ModuleLoader::attach(ModuleEntryPoints entryPoints, const std::string& name) {
    unload();
    checkServices(name);
    m_path = name;
    attachEntryPoints(entryPoints);
}

void ModuleLoader::attachEntryPoints(ModuleEntryPoints entryPoints) {
    m_context = entryPoints.context();
    if (m_context == nullptr) {
        const std::string name = m_path;
        unload();
        throw ModuleError("module " + name + " has no analysis context");
    }
    m_newAnalysis = entryPoints.newAnalysis;
    m_context->Host = m_services;
}

CAnalysisSupport& ModuleLoader::openAnalysis(CAnalysisDoc* document) {
    if (!isLoaded())
        throw ModuleError("no module loaded");
    CAnalysisSupport* analysis = m_newAnalysis();
    if (analysis == nullptr)
        throw ModuleError("module " + m_path + " could not create an analysis");
    analysis->AttachDocument(document);
    analysis->ContextEntry();
    if (analysis->ForwardSequence(FirstStep, 0) == 0) {
        destroy(analysis);
        throw ModuleError("module " + m_path + ": the analysis did not start");
    }
    m_analyses.push_back(analysis);
    return *analysis;
}

void ModuleLoader::closeAnalysis(CAnalysisSupport& analysis) {
    const auto found = std::find(m_analyses.begin(), m_analyses.end(), &analysis);
    if (found == m_analyses.end())
        return;
    m_analyses.erase(found);
    destroy(&analysis);
}

void ModuleLoader::destroy(CAnalysisSupport* analysis) {
    analysis->ContextEntry();
    analysis->Close();
    delete analysis;
}

void ModuleLoader::unload() {
    while (!m_analyses.empty()) {
        CAnalysisSupport* newest = m_analyses.back();
        m_analyses.pop_back();
        destroy(newest);
    }
    // The module's context outlives this loader's services only if the library stays
    // loaded elsewhere; it must not keep pointers to them.
    if (m_context != nullptr)
        m_context->Host = HostServices{};
    m_context = nullptr;
    m_newAnalysis = nullptr;
    if (m_library != nullptr)
        dlclose(m_library);
    m_library = nullptr;
    m_path.clear();
}

} // namespace wb
