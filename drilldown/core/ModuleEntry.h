#pragma once
// The library's two exports, looked up by name by a host that loads the plug-in, or called
// directly by a program that links the module in.
//
//   1. Vmk6AnalysisContext()->Host = the host's services;
//   2. Vmk6NewAnalysis() makes an analysis, whose sequence table the host then walks.

class CAnalysisContext;
class CAnalysisSupport;

extern "C" {
// The module-wide context; null when it could not be allocated.
CAnalysisContext* Vmk6AnalysisContext();
// A new analysis, not started; null without memory.
CAnalysisSupport* Vmk6NewAnalysis();
}
