// The _quorvel extension: the type library's classes reached by name from Python, as an
// automation host reaches them, so every class and member is there without a list to keep.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <sstream>

#include "automation/document_job.hpp"
#include "automation/job_output.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "python/src/bridge.hpp"
#include "quorvel.h"

namespace py = pybind11;

namespace quorvel::python {

namespace {

// print_document(json_text, output, paper, preview): the loader and printing of `quorvel print`.
std::vector<std::string> PrintDocument(const std::string& text, const std::string& output, const std::string& paper,
                                       bool preview) {
  return Locked([&] {
    const Paper chosen = Paper::Named(paper);
    const PrinterOutput target = FileOutput(output);
    std::istringstream in(text);
    const DocumentJob job = LoadDocumentJobStream(in, "the document");
    return PrintJobTo(job, target, chosen, preview).results;
  });
}

// The C interface's printer calls already check their arguments; a failed status becomes the
// Python exception through the thread's last error.
void CheckStatus(int32_t status) {
  if (status == QUORVEL_OK) return;
  int32_t number = 0;
  const char* message = "";
  quorvel_last_error(&number, &message);
  throw AutomationError(number, message);
}

void SetOutput(const std::string& path, const std::optional<std::string>& paper) {
  Locked([&] { CheckStatus(quorvel_printer_set_output(path.c_str(), paper ? paper->c_str() : nullptr)); });
}

void SetQueue(const std::string& queue, const std::optional<std::string>& paper) {
  Locked([&] { CheckStatus(quorvel_printer_set_queue(queue.c_str(), paper ? paper->c_str() : nullptr)); });
}

// PDF/A and attachments change the output set last, so they follow set_output.
void Attach(const std::string& path, const std::optional<std::string>& mime_type,
            const std::optional<std::string>& relationship, const std::optional<std::string>& description) {
  const auto text = [](const std::optional<std::string>& value) { return value ? value->c_str() : nullptr; };
  Locked([&] {
    CheckStatus(quorvel_printer_attach(path.c_str(), text(mime_type), text(relationship), text(description)));
  });
}

py::tuple LastResults() {
  const auto [results, pages] = Locked([] {
    const PrinterSurface& printer = SystemPrinter();
    return std::pair{printer.LastResults(), printer.LastPageCount()};
  });
  return py::make_tuple(results, pages);
}

std::vector<std::string> PreviewOps(const Object& preview) {
  auto* surface = dynamic_cast<PreviewSurface*>(preview.ref.cls && preview.ref.cls->as_surface
                                                    ? preview.ref.cls->as_surface(preview.ref.ptr.get())
                                                    : nullptr);
  if (!surface) throw AutomationError(err::kTypeMismatch, StandardDescription(err::kTypeMismatch), "not a preview surface");
  std::vector<std::string> lines;
  for (const DrawOp& op : surface->Ops()) lines.push_back(OpToJson(op));
  return lines;
}

}  // namespace

void DefineFunctions(py::module_& module) {
  module.def("version", [] { return std::string(quorvel_version()); });
  module.def("create", [](const std::string& name) { return Object{Locked([&] { return CreateObject(name); })}; },
             py::arg("name"));
  module.def("classes", &ClassList);
  module.def("system_printer", [] { return Object{SystemPrinterRef()}; });
  module.def("preview", &NewPreview, py::arg("width"), py::arg("height"));
  module.def("preview_ops", &PreviewOps, py::arg("preview"));
  module.def("set_output", &SetOutput, py::arg("path"), py::arg("paper") = py::none());
  module.def("set_queue", &SetQueue, py::arg("queue") = "", py::arg("paper") = py::none());
  module.def("set_pdfa", [](bool on) { Locked([&] { CheckStatus(quorvel_printer_set_pdfa(on ? 1 : 0)); }); },
             py::arg("on") = true);
  module.def("attach", &Attach, py::arg("path"), py::arg("mime_type") = py::none(),
             py::arg("relationship") = py::none(), py::arg("description") = py::none());
  module.def("clear_attachments", [] { Locked([] { CheckStatus(quorvel_printer_clear_attachments()); }); });
  module.def("end_doc", [] { Locked([] { CheckStatus(quorvel_printer_end_doc()); }); });
  module.def("kill_doc", [] { Locked([] { CheckStatus(quorvel_printer_kill_doc()); }); });
  module.def("last_results", &LastResults);
  module.def("print_document", &PrintDocument, py::arg("document_json"), py::arg("output"),
             py::arg("paper") = "a4", py::arg("preview") = false);
  module.def("acquire", [] { AcquireTurn(); });
  module.def("release", [] { ReleaseTurn(); });
}

}  // namespace quorvel::python

PYBIND11_MODULE(_quorvel, module) {
  module.doc() = "Quorvel's classes, printer and preview surfaces (use the quorvel package)";
  quorvel::python::DefineErrors(module);
  quorvel::python::DefineObject(module);
  quorvel::python::DefineFunctions(module);
}
