// A document described in JSON, built and printed entirely through the type library by name.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "automation/type_library.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

// What a JSON document asks for: the data object and printer object it built, and the
// arguments of the print call ("printHeader", "isReceipt", "printTable", "pageNumber").
struct DocumentJob {
  std::string type;
  ObjectRef document;
  ObjectRef printer;
  nlohmann::json arguments = nlohmann::json::object();
};

// The document types a JSON file may name, in the order the command lists them.
std::vector<std::string> DocumentTypes();

// Builds the job; applies "company" to the process-wide profile. Every name is checked against
// the type library: an unknown name or a value of the wrong type raises an error naming it.
DocumentJob LoadDocumentJob(const nlohmann::json& description);
DocumentJob LoadDocumentJobFile(const std::string& path);

// Prints the job the way a host's PrintIt would, on the system printer, ending the document.
void PrintJobOnSystemPrinter(const DocumentJob& job);
// Prints the job's document routine on a surface of the caller's (a preview).
void PrintJobOnSurface(const DocumentJob& job, Surface& surface);

// Late-bound references to the process-wide system printer, and to any surface the caller owns
// (valid while the caller keeps the surface).
ObjectRef SystemPrinterRef();
ObjectRef BorrowedSurface(Surface& surface);

}  // namespace quorvel
