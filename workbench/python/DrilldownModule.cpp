// The Python front end: a module `drilldown` that opens any data file the workbench reads,
// makes a drill-down analysis on it and drives the analysis's panel by member name as a
// macro does; documents, state and the workbench's own figures come back as plain Python
// lists and dicts. One analysis at a time per process: the module linked in serves one.
//
//   import drilldown
//   a = drilldown.Analysis("examples/sample.csv", out="drilldown-out")
//   a.set("Variables", "REGION SEX | AGE")
//   a.drill_down("REGION", "Bretagne")
//   a.get("CategorySelections"), a.call("Frequencies")
//   a.documents()  ->  [{"kind": "table", "title": ..., "columns": [...], ...}, ...]

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>

#include "drilldown/core/ModuleEntry.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/automation/Macro.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/documents/GraphJson.h"
#include "workbench/documents/TableJson.h"
#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/session/AnalysisSession.h"
#include "workbench/session/DrillCondition.h"
#include "workbench/session/StateJson.h"
#include "workbench/stats/SubsetContrast.h"

namespace py = pybind11;

namespace {

// JSON text as Python objects.
py::object fromJson(const std::string& text) {
    return py::module_::import("json").attr("loads")(text);
}

// A value from Python as the panel takes it: text, whole number, real number, True/False.
COleVariant variantOf(wb::AutomationRuntime& automation, const py::handle& value) {
    if (py::isinstance<py::bool_>(value))
        return COleVariant(value.cast<bool>());
    if (py::isinstance<py::int_>(value))
        return COleVariant(static_cast<LONG>(value.cast<long>()));
    if (py::isinstance<py::float_>(value))
        return COleVariant(value.cast<double>());
    return COleVariant::Text(automation, py::str(value).cast<std::string>());
}

class Analysis {
public:
    Analysis(const std::string& path, const std::string& out)
        : m_session(m_frontEnd.bundle(),
                    wb::SessionOptions{
                        .module = wb::ModuleEntryPoints{&Vmk6AnalysisContext, &Vmk6NewAnalysis},
                        .outputFolder = out,
                        .keywordFile = {}}) {
        m_session.open(wb::loadDataFile(path));
        m_session.analysisDocument().setAutomated(true);
        m_session.startAnalysis();
    }
    ~Analysis() { m_session.closeAnalysis(); }

    void set(const std::string& member, const py::handle& value) {
        dispatcher().put(m_session.panelObject(), member, variantOf(m_session.automation(), value));
    }
    py::object get(const std::string& member) {
        const COleVariant value = dispatcher().get(m_session.panelObject(), member);
        if (value.vt == VT_DISPATCH)
            return value.pdispVal == nullptr
                       ? py::none()
                       : py::object(
                             py::str(wb::macroValueText(dispatcher().get(value.pdispVal, "Name"))));
        return py::str(wb::macroValueText(value));
    }
    // A method or a result: the title of the first document it made, or None.
    py::object call(const std::string& member) {
        const COleVariant value = dispatcher().callOrGet(m_session.panelObject(), member);
        if (value.vt == VT_DISPATCH && value.pdispVal != nullptr)
            return py::str(wb::macroValueText(dispatcher().get(value.pdispVal, "Name")));
        return py::none();
    }

    void drillDown(const std::string& variable, const py::handle& category) {
        const short var = static_cast<short>(m_session.file().findVariable(variable));
        if (var == 0)
            throw py::value_error("no variable named \"" + variable + "\"");
        const std::vector<std::string> rows = m_session.categoryRows(var);
        int row = -1;
        if (py::isinstance<py::int_>(category)) {
            row = category.cast<int>();
        } else {
            const std::string text = py::str(category);
            for (std::size_t k = 0; k < rows.size(); ++k)
                if (rows[k] == text)
                    row = static_cast<int>(k);
        }
        if (row < 0 || row >= static_cast<int>(rows.size()))
            throw py::value_error("no category " + std::string(py::str(category)) + " of " +
                                  variable);
        m_session.drillDown(var, row);
    }
    void drillUp(int position) { m_session.drillUp(position); }
    std::vector<std::string> categories(const std::string& variable) {
        const short var = static_cast<short>(m_session.file().findVariable(variable));
        if (var == 0)
            throw py::value_error("no variable named \"" + variable + "\"");
        return m_session.categoryRows(var);
    }

    py::list documents() const {
        py::list all;
        for (const wb::Document& document : m_session.output().documents())
            all.append(fromJson(document.isTable() ? wb::tableJsonText(document.table())
                                                   : wb::graphJsonText(document.graph())));
        return all;
    }
    py::object state() const { return fromJson(wb::stateText(m_session.analysis())); }
    std::string condition() const {
        return wb::drillPathCondition(m_session.analysis(), m_session.file());
    }
    std::string contrast() const {
        return wb::contrastText(wb::contrastSubset(m_session.analysis(), m_session.file()));
    }
    std::vector<std::string> takeMessages() {
        std::vector<std::string> said = m_frontEnd.messages().messages();
        m_frontEnd.messages().clear();
        return said;
    }

private:
    wb::Dispatcher dispatcher() { return wb::Dispatcher(m_session.automation()); }

    wb::HeadlessFrontEnd m_frontEnd{nullptr, nullptr};
    mutable wb::AnalysisSession m_session;
};

} // namespace

PYBIND11_MODULE(drilldown, module) {
    module.doc() = "Drill-down analysis of a data file, driven as a macro drives its panel";
    // The workbench's errors arrive as Python errors with the workbench's message.
    py::register_exception<wb::DataError>(module, "DataError", PyExc_ValueError);
    py::register_exception<wb::DrillError>(module, "DrillError", PyExc_ValueError);
    py::register_exception<wb::AutomationError>(module, "MemberError", PyExc_RuntimeError);
    py::class_<Analysis>(module, "Analysis")
        .def(py::init<const std::string&, const std::string&>(), py::arg("path"),
             py::arg("out") = "drilldown-out",
             "Opens a data file (CSV, native, SPSS, Stata, SAS) and starts an analysis on it; "
             "saved subsets go to `out`")
        .def("set", &Analysis::set, "Writes a member of the panel, as `Member = value`")
        .def("get", &Analysis::get, "Reads a member, as `Print Member`")
        .def("call", &Analysis::call, "Runs a method or a result; the title of its document")
        .def("drill_down", &Analysis::drillDown, py::arg("variable"), py::arg("category"),
             "Drills into a category, by its row number or its text")
        .def("drill_up", &Analysis::drillUp, py::arg("position") = 0,
             "Undoes the drill step at that row of the drill-up list (0: the newest)")
        .def("categories", &Analysis::categories, "The rows the category dialog offers")
        .def("documents", &Analysis::documents, "Every result document, as dicts")
        .def("state", &Analysis::state, "The analysis's records, as `Dump` gives them")
        .def("condition", &Analysis::condition, "The subset as a selection condition")
        .def("contrast", &Analysis::contrast, "The subset against the rest of the level above")
        .def("messages", &Analysis::takeMessages, "The messages shown since the last call");
}
