#include "workbench/automation/MemberReference.h"

#include <algorithm>
#include <map>

namespace wb {

namespace {

// Members whose library gives no help string, by "Interface.Member".
const std::map<std::string, std::string, std::less<>> OwnMeanings = {
    {"QrxAnalysisDialog.Name", "The panel's title"},
    {"QrxAnalysisDialog.OK", "Closes the panel as its OK button does, keeping its settings; gives 1"},
    {"QrxAnalysisDialog.Cancel", "Closes the panel as its Cancel button does"},
    {"QrxAnalysisDialog.ResultsVariables",
     "The two lists of a 3D histogram, \"first | second\", written before `Review3DHistograms`"},
    {"QrxAnalysisDialog.ResultsSelection", "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsSelectionOption",
     "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsOption", "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsCodes", "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsSaveFileName",
     "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsValues", "Refused: this panel has no result-selection dialog"},
    {"QrxAnalysisDialog.ResultsOutputFields",
     "Refused: this panel has no result-selection dialog"},
    {"DocumentWindow.Left", "The window's left edge, in pixels of the window area"},
    {"DocumentWindow.Top", "The window's top edge, in pixels of the window area"},
    {"DocumentWindow.Width", "The window's width in pixels"},
    {"DocumentWindow.Height", "The window's height in pixels"},
    {"DocumentWindow.State", "1 minimised, 2 normal, 3 maximised"},
};

const char* typeName(MemberType type) {
    switch (type) {
    case MemberType::Int:
        return "integer";
    case MemberType::Double:
        return "number";
    case MemberType::Text:
        return "text";
    case MemberType::Variant:
        return "any value";
    case MemberType::Object:
        return "object";
    case MemberType::None:
        break;
    }
    return "";
}

// The entries of one member name, get, put and method together.
struct MemberRow {
    const RegisteredMember* get = nullptr;
    const RegisteredMember* put = nullptr;
    const RegisteredMember* method = nullptr;
};

std::string typeText(const MemberRow& row) {
    if (row.method != nullptr) {
        std::string text;
        for (MemberType parameter : row.method->parameters)
            text += std::string(text.empty() ? "takes " : ", ") + typeName(parameter);
        if (row.method->type != MemberType::None)
            text += (text.empty() ? "gives " : "; gives ") + std::string(typeName(row.method->type));
        return text;
    }
    const RegisteredMember* shown = row.get != nullptr ? row.get : row.put;
    std::string text = typeName(shown->type);
    if (row.get != nullptr && row.put != nullptr && row.put->type != row.get->type)
        text += std::string("; written from ") + typeName(row.put->type);
    return text;
}

std::string accessText(const MemberRow& row) {
    if (row.method != nullptr)
        return "run";
    if (row.get != nullptr && row.put != nullptr)
        return "read, write";
    return row.get != nullptr ? "read" : "write";
}

std::string meaning(const RegisteredInterface& interface, const std::string& member,
                    const MemberRow& row) {
    for (const RegisteredMember* entry : {row.get, row.put, row.method})
        if (entry != nullptr && !entry->helpString.empty())
            return entry->helpString;
    const auto own = OwnMeanings.find(interface.name + "." + member);
    return own != OwnMeanings.end() ? own->second : "(no description)";
}

// A table cell's text: a bar would end the cell.
std::string cell(std::string_view text) {
    std::string out;
    for (char c : text)
        out += c == '|' ? std::string("\\|") : std::string(1, c);
    return out;
}

std::string interfaceTable(const RegisteredLibrary& library,
                           const RegisteredInterface& interface,
                           const std::vector<RegisteredLibrary>& libraries) {
    std::string text = "### " + interface.name + "\n\n" + interface.helpString + " (library `" +
                       library.name + "`)";
    for (const RegisteredLibrary& other : libraries)
        for (const RegisteredInterface& base : other.interfaces)
            if (base.iid == interface.base)
                text += "; it has the members of `" + base.name + "` too";
    text += ".\n\n| member | type | access | meaning |\n|---|---|---|---|\n";
    std::vector<std::string> order;
    std::map<std::string, MemberRow> rows;
    for (const RegisteredMember& member : interface.members) {
        auto [row, added] = rows.try_emplace(member.name);
        if (added)
            order.push_back(member.name);
        (member.access == MemberAccess::Get   ? row->second.get
         : member.access == MemberAccess::Put ? row->second.put
                                              : row->second.method) = &member;
    }
    for (const std::string& name : order) {
        const MemberRow& row = rows[name];
        text += "| `" + name + "` | " + typeText(row) + " | " + accessText(row) + " | " +
                cell(meaning(interface, name, row)) + " |\n";
    }
    return text;
}

} // namespace

std::string memberReference(const AutomationRuntime& automation) {
    std::vector<RegisteredLibrary> libraries = automation.registeredLibraries();
    std::sort(libraries.begin(), libraries.end(),
              [](const RegisteredLibrary& a, const RegisteredLibrary& b) { return a.name < b.name; });
    std::string text;
    for (const RegisteredLibrary& library : libraries)
        for (const RegisteredInterface& interface : library.interfaces)
            text += (text.empty() ? "" : "\n") + interfaceTable(library, interface, libraries);
    return text;
}

} // namespace wb
