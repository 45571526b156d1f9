// Building documents from JSON through the type library, and running their print routines.
#include "automation/document_job.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "automation/document_file.hpp"
#include "automation/document_kinds.hpp"
#include "automation/nearest_name.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"

namespace quorvel {

namespace {

using nlohmann::json;

// The print-call arguments a file may give, with the values used when it does not.
const json& ArgumentDefaults() {
  static const json defaults = {{"printHeader", true}, {"isReceipt", false}, {"printTable", true}, {"pageNumber", 1}};
  return defaults;
}

[[noreturn]] void WrongType(const std::string& where, const std::string& expected) {
  Raise(err::kTypeMismatch, where + ": expected " + expected);
}

Variant ToVariant(const json& value, const TypeRef& type, const std::string& where) {
  switch (type.kind) {
    case TypeKind::String:
      if (!value.is_string()) WrongType(where, "a text");
      // A NUL would end the text early wherever it is drawn: refused here, where the field is known.
      if (value.get_ref<const std::string&>().find('\0') != std::string::npos)
        Raise(err::kInvalidArgument, where + ": the text holds a NUL character (\\u0000)");
      return Variant(value.get<std::string>());
    case TypeKind::Boolean:
      if (!value.is_boolean()) WrongType(where, "true or false");
      return Variant(value.get<bool>());
    case TypeKind::Integer:
    case TypeKind::Long:
    case TypeKind::Single:
    case TypeKind::Double:
      if (!value.is_number()) WrongType(where, "a number");
      return Variant(value.get<double>());
    default:
      WrongType(where, "a value of a kind this loader does not set");
  }
}

void FillObject(const ObjectRef& object, const json& fields, const std::string& where);

// The top-level keys a document file may use.
std::vector<std::string> FileKeys() {
  std::vector<std::string> keys{"type", "company", "printer", "document"};
  for (const auto& [key, value] : ArgumentDefaults().items()) keys.push_back(key);
  return keys;
}

// Each array element becomes a new object of the collection's element class, added in order.
void FillCollection(const ObjectRef& object, const MemberInfo& getter, const json& lines, const std::string& where) {
  if (!lines.is_array()) WrongType(where, "an array of objects");
  // Checked before any line is built: a huge list is refused at once, not after building it.
  if (lines.size() > kMostLines)
    Raise(err::kOverflow, where + ": " + std::to_string(lines.size()) + " lines; a document holds at most 32,767");
  const ClassInfo* element = LineClassOf(getter);
  if (!element) WrongType(where, "a property that holds lines");
  const ObjectRef list = GetProperty(object, getter.name).AsObject();
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string line_where = where + "[" + std::to_string(i) + "]";
    ObjectRef line = CreateObject(element->name);
    FillObject(line, lines[i], line_where);
    std::vector<Variant> args{Variant(line)};
    CallMethod(list, "Add", args);
  }
}

void FillObject(const ObjectRef& object, const json& fields, const std::string& where) {
  if (!fields.is_object()) WrongType(where, "an object");
  const ClassInfo& cls = *object.cls;
  for (const auto& [name, value] : fields.items()) {
    const std::string field_where = where + "." + name;
    const MemberInfo* getter = cls.Find(name, MemberKind::PropertyGet);
    if (getter && getter->type.kind == TypeKind::Collection) {
      FillCollection(object, *getter, value, field_where);
      continue;
    }
    const MemberInfo* put = cls.Find(name, MemberKind::PropertyPut);
    if (!put) Raise(err::kNotSupported, field_where + ": " + cls.name + " has no property \"" + name + "\"" + DidYouMean(name, FileFields(cls)));
    try {
      PutProperty(object, name, ToVariant(value, put->type, field_where));
    } catch (const AutomationError& e) {
      if (e.Context().rfind(field_where, 0) == 0) throw;
      throw AutomationError(e.Number(), e.Description(), field_where + ": " + e.Context());
    }
  }
}

// The company section: SetCompanyInfo's twelve texts by name, and "TopMargin" for SetTopMargin.
// One ClassCompanyInfo serves the process, as a host creates it once at start.
void ApplyCompany(const json& company) {
  if (!company.is_object()) WrongType("company", "an object");
  static const ObjectRef info = CreateObject("Quorvel.ClassCompanyInfo");
  const MemberInfo& set = *info.cls->Find("SetCompanyInfo", MemberKind::Method);
  std::vector<Variant> args(set.params.size(), Variant(std::string()));
  for (const auto& [name, value] : company.items()) {
    if (name == "TopMargin" || name == "Logo") continue;
    size_t i = 0;
    while (i < set.params.size() && set.params[i].name != name) ++i;
    if (i == set.params.size()) Raise(err::kNotSupported, "company." + name + ": not a company field" + DidYouMean(name, CompanyFields()));
    args[i] = ToVariant(value, set.params[i].type, "company." + name);
  }
  CallMethod(info, "SetCompanyInfo", args);
  if (company.contains("TopMargin")) {
    std::vector<Variant> margin{ToVariant(company["TopMargin"], TypeRef{TypeKind::Long}, "company.TopMargin")};
    CallMethod(info, "SetTopMargin", margin);
  }
  // The logo belongs to the document's company like its texts: a company without one has none.
  std::vector<Variant> logo{company.contains("Logo") ? ToVariant(company["Logo"], TypeRef{TypeKind::String}, "company.Logo")
                                                     : Variant(std::string())};
  CallMethod(info, "SetLogo", logo);
}

// The print-call arguments of the job, each already checked against its default's type.
PrintCallArguments PrintCallArgumentsOf(const DocumentJob& job) {
  PrintCallArguments arguments;
  arguments.printHeader = job.arguments.value("printHeader", true);
  arguments.isReceipt = job.arguments.value("isReceipt", false);
  arguments.printTable = job.arguments.value("printTable", true);
  arguments.pageNumber = ToInt16(job.arguments.value("pageNumber", 1.0), "pageNumber");
  return arguments;
}

}  // namespace

const ClassInfo* LineClassOf(const MemberInfo& getter) {
  if (getter.type.kind != TypeKind::Collection) return nullptr;
  const ClassInfo* collection = TypeLibrary::Get().Find(getter.type.cpp_type);
  const MemberInfo* item = collection ? collection->Find("Item", MemberKind::Method) : nullptr;
  return item ? TypeLibrary::Get().Find(item->type.cpp_type) : nullptr;
}

std::string JsonTypeOf(TypeKind kind) {
  switch (kind) {
    case TypeKind::String: return "string";
    case TypeKind::Boolean: return "boolean";
    case TypeKind::Integer:
    case TypeKind::Long:
    case TypeKind::Single:
    case TypeKind::Double: return "number";
    default: return "";
  }
}

std::vector<std::string> FileFields(const ClassInfo& cls) {
  std::vector<std::string> fields;
  for (const MemberInfo& m : cls.members) {
    const bool lines = m.kind == MemberKind::PropertyGet && LineClassOf(m);
    const bool settable = m.kind == MemberKind::PropertyPut && !JsonTypeOf(m.type.kind).empty();
    if ((lines || settable) && std::find(fields.begin(), fields.end(), m.name) == fields.end()) fields.push_back(m.name);
  }
  return fields;
}

std::vector<std::string> CompanyFields() {
  const MemberInfo& set = *TypeLibrary::Get().Find("ClassCompanyInfo")->Find("SetCompanyInfo", MemberKind::Method);
  std::vector<std::string> fields;
  for (const ParamInfo& p : set.params) fields.push_back(p.name);
  fields.push_back("TopMargin");
  fields.push_back("Logo");
  return fields;
}

std::vector<DocumentClasses> DocumentTypeClasses() {
  std::vector<DocumentClasses> classes;
  for (const DocumentKind& kind : DocumentKinds()) {
    const bool has_classes = kind.document_class != typeid(void);  // the letterhead has none
    classes.push_back({kind.type, has_classes ? ClassNameOf(kind.document_class) : "",
                       has_classes ? ClassNameOf(kind.printer_class) : ""});
  }
  return classes;
}

const json& PrintArguments() { return ArgumentDefaults(); }

std::vector<std::string> DocumentTypes() {
  std::vector<std::string> types;
  for (const DocumentKind& kind : DocumentKinds()) types.push_back(kind.type);
  return types;
}

DocumentJob LoadDocumentJob(const json& description) {
  if (!description.is_object()) WrongType("the document file", "a JSON object");
  if (!description.contains("type") || !description["type"].is_string()) WrongType("type", "a document type text");
  DocumentJob job;
  job.type = description["type"].get<std::string>();
  const DocumentKind& kind = FindDocumentKind(job.type);
  job.arguments = ArgumentDefaults();
  for (const auto& [key, value] : description.items()) {
    if (key == "type" || key == "company" || key == "printer" || key == "document") continue;
    if (!ArgumentDefaults().contains(key))
      Raise(err::kNotSupported, "\"" + key + "\": not a document file key" + DidYouMean(key, FileKeys()));
    if (value.type() != ArgumentDefaults()[key].type() &&
        !(value.is_number() && ArgumentDefaults()[key].is_number()))
      WrongType(key, ArgumentDefaults()[key].is_boolean() ? "true or false" : "a number");
    job.arguments[key] = value;
  }
  if (description.contains("company")) ApplyCompany(description["company"]);
  if (kind.document_class == typeid(void)) return job;
  job.document = CreateObject(ClassNameOf(kind.document_class));
  job.printer = CreateObject(ClassNameOf(kind.printer_class));
  if (description.contains("document")) FillObject(job.document, description["document"], "document");
  if (description.contains("printer")) FillObject(job.printer, description["printer"], "printer");
  return job;
}

DocumentJob LoadDocumentJobFile(const std::string& path) { return LoadDocumentJob(ReadDocumentFile(path)); }

DocumentJob LoadDocumentJobStream(std::istream& in, const std::string& name) {
  const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) Raise(err::kFileError, "cannot read " + name);
  return LoadDocumentJob(ParseDocumentText(text, name));
}

// A surface the caller owns, lent to a late-bound call; it is never released through the reference.
ObjectRef BorrowedSurface(Surface& surface) {
  return ObjectRef{std::shared_ptr<void>(static_cast<Surface*>(&surface), [](void*) {}),
                   TypeLibrary::Get().Find(typeid(Surface))};
}

ObjectRef SystemPrinterRef() { return BorrowedSurface(SystemPrinter()); }

void PrintJobOnSystemPrinter(const DocumentJob& job) {
  const DocumentKind& kind = FindDocumentKind(job.type);
  PrintCallArguments arguments = PrintCallArgumentsOf(job);
  PrintOnSystemPrinter([&](Surface& surface) {
    if (kind.print_it) {
      kind.print_it(job.printer.ptr.get(), job.document.ptr.get(), arguments);
      return;
    }
    kind.print_on(job.printer.ptr.get(), job.document.ptr.get(), surface, arguments);
    // This routine leaves ending the document to its caller; the letterhead alone ends with
    // errors ignored, as every document routine does.
    if (kind.document_class == typeid(void)) return IgnoreErrors([&] { surface.EndDoc(); });
    surface.EndDoc();
  });
}

void PrintJobOnSurface(const DocumentJob& job, Surface& surface) {
  const DocumentKind& kind = FindDocumentKind(job.type);
  PrintCallArguments arguments = PrintCallArgumentsOf(job);
  kind.print_on(job.printer.ptr.get(), job.document.ptr.get(), surface, arguments);
  if (kind.document_class == typeid(void)) IgnoreErrors([&] { surface.EndDoc(); });
}

}  // namespace quorvel
