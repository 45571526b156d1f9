// A document described in JSON, built and printed entirely through the type library by name.
#pragma once

#include <istream>
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

// The classes behind each document type (an empty name: none), in the same order.
struct DocumentClasses {
  std::string type;
  std::string document_class;
  std::string printer_class;
};
std::vector<DocumentClasses> DocumentTypeClasses();

// What a file may set: a class's texts, switches and line lists (by their declared names); the
// company section's fields; the print-call arguments with the values used when left out.
std::vector<std::string> FileFields(const ClassInfo& cls);
// The class of the lines a collection property holds; nullptr for anything else.
const ClassInfo* LineClassOf(const MemberInfo& getter);
// The JSON type a file gives for a value of this kind ("string", "boolean", "number"); "" when
// a file cannot set such a value.
std::string JsonTypeOf(TypeKind kind);
std::vector<std::string> CompanyFields();
const nlohmann::json& PrintArguments();

// Builds the job; applies "company" to the process-wide profile. Every name is checked against
// the type library: an unknown name or a value of the wrong type raises an error naming it.
DocumentJob LoadDocumentJob(const nlohmann::json& description);
DocumentJob LoadDocumentJobFile(const std::string& path);
// The same from an open stream (standard input); `name` stands for it in errors.
DocumentJob LoadDocumentJobStream(std::istream& in, const std::string& name);

// Prints the job the way a host's PrintIt would, on the system printer, ending the document.
void PrintJobOnSystemPrinter(const DocumentJob& job);
// Prints the job's document routine on a surface of the caller's (a preview).
void PrintJobOnSurface(const DocumentJob& job, Surface& surface);

// Late-bound references to the process-wide system printer, and to any surface the caller owns
// (valid while the caller keeps the surface).
ObjectRef SystemPrinterRef();
ObjectRef BorrowedSurface(Surface& surface);

}  // namespace quorvel
