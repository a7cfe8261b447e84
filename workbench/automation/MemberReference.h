#pragma once
// The reference of what a macro can reach, made from the registered type libraries, so
// that the documentation cannot drift from them: docs/macros.md holds this text, and a test
// compares the two.

#include <string>

#include "workbench/automation/AutomationRuntime.h"

namespace wb {

// Markdown: for each interface of the registered libraries, by library name, a heading and
// a table with each member once: its type, its access (read, write, run) and its meaning,
// the library's help string or the workbench's word where the library has none. A member
// that has neither is marked "(no description)".
std::string memberReference(const AutomationRuntime& automation);

} // namespace wb
