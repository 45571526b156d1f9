// Building documents from JSON through the type library, and running their print routines.
#include "automation/document_job.hpp"

#include "automation/document_file.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel {

namespace {

using nlohmann::json;

// Which classes and routines serve each document type.
struct JobKind {
  std::string type;
  std::string document_class;  // empty: no document object
  std::string printer_class;
  std::string print_it;  // routine on the system printer; empty: the surface routine, then EndDoc
  std::string print_on;  // routine taking a surface
};

const std::vector<JobKind>& Kinds() {
  static const std::vector<JobKind> kinds = {
      {"letterhead", "", "", "", ""},
      {"voucher", "ClassVoucher", "ClassVoucherPrinter", "PrintIt", "PrintReceiptVoucher"},
      {"invoice", "ClassInvoice", "ClassInvoicePrinter", "PrintIt", "PrintInvoice"},
      {"delivery_note", "ClassDeliveryNote", "ClassDeliveryNotePrinter", "PrintIt", "PrintDeliveryNote"},
      {"receipt", "ClassInvoice", "ReceiptPrinter", "PrintIt", "PrintReceipt"},
      {"statement", "ClassStatement", "ClassStatementPrinter", "PrintIt", "PrintStatement"},
      {"cheque_list", "ClassStatement", "ClassCheckPrinter", "", "PrintChecks"},
  };
  return kinds;
}

const JobKind& KindOf(const std::string& type) {
  for (const JobKind& kind : Kinds())
    if (kind.type == type) return kind;
  std::string known;
  for (const JobKind& kind : Kinds()) known += (known.empty() ? "" : ", ") + kind.type;
  Raise(err::kInvalidArgument, "\"type\": unknown document type \"" + type + "\" (known: " + known + ")");
}

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

// Each array element becomes a new object of the collection's element class, added in order.
void FillCollection(const ObjectRef& object, const MemberInfo& getter, const json& lines, const std::string& where) {
  if (!lines.is_array()) WrongType(where, "an array of objects");
  // Checked before any line is built: a huge list is refused at once, not after building it.
  if (lines.size() > kMostLines)
    Raise(err::kOverflow, where + ": " + std::to_string(lines.size()) + " lines; a document holds at most 32,767");
  const ClassInfo* collection = TypeLibrary::Get().Find(getter.type.cpp_type);
  const MemberInfo* item = collection ? collection->Find("Item", MemberKind::Method) : nullptr;
  const ClassInfo* element = item ? TypeLibrary::Get().Find(item->type.cpp_type) : nullptr;
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
    if (!put) Raise(err::kNotSupported, field_where + ": " + cls.name + " has no property \"" + name + "\"");
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
    if (name == "TopMargin") continue;
    size_t i = 0;
    while (i < set.params.size() && set.params[i].name != name) ++i;
    if (i == set.params.size()) Raise(err::kNotSupported, "company." + name + ": not a company field");
    args[i] = ToVariant(value, set.params[i].type, "company." + name);
  }
  CallMethod(info, "SetCompanyInfo", args);
  if (company.contains("TopMargin")) {
    std::vector<Variant> margin{ToVariant(company["TopMargin"], TypeRef{TypeKind::Long}, "company.TopMargin")};
    CallMethod(info, "SetTopMargin", margin);
  }
}

// Arguments of a print routine, matched by parameter name.
std::vector<Variant> ArgumentsFor(const DocumentJob& job, const std::string& routine, const ObjectRef* surface) {
  const MemberInfo* m = job.printer.cls->Find(routine, MemberKind::Method);
  if (!m) Raise(err::kNotSupported, job.printer.cls->name + " has no method " + routine);
  std::vector<Variant> args;
  for (const ParamInfo& p : m->params) {
    if (p.type.kind == TypeKind::Surface) args.push_back(surface ? Variant(*surface) : Variant());
    else if (p.type.kind == TypeKind::Object) args.push_back(Variant(job.document));
    else args.push_back(ToVariant(job.arguments.value(p.name, json()), p.type, p.name));
  }
  return args;
}

void PrintLetterheadJob(Surface& surface);

}  // namespace

std::vector<std::string> DocumentTypes() {
  std::vector<std::string> types;
  for (const JobKind& kind : Kinds()) types.push_back(kind.type);
  return types;
}

DocumentJob LoadDocumentJob(const json& description) {
  if (!description.is_object()) WrongType("the document file", "a JSON object");
  if (!description.contains("type") || !description["type"].is_string()) WrongType("type", "a document type text");
  DocumentJob job;
  job.type = description["type"].get<std::string>();
  const JobKind& kind = KindOf(job.type);
  job.arguments = ArgumentDefaults();
  for (const auto& [key, value] : description.items()) {
    if (key == "type" || key == "company" || key == "printer" || key == "document") continue;
    if (!ArgumentDefaults().contains(key)) Raise(err::kNotSupported, "\"" + key + "\": not a document file key");
    if (value.type() != ArgumentDefaults()[key].type() &&
        !(value.is_number() && ArgumentDefaults()[key].is_number()))
      WrongType(key, ArgumentDefaults()[key].is_boolean() ? "true or false" : "a number");
    job.arguments[key] = value;
  }
  if (description.contains("company")) ApplyCompany(description["company"]);
  if (kind.document_class.empty()) return job;
  job.document = CreateObject(kind.document_class);
  job.printer = CreateObject(kind.printer_class);
  if (description.contains("document")) FillObject(job.document, description["document"], "document");
  if (description.contains("printer")) FillObject(job.printer, description["printer"], "printer");
  return job;
}

DocumentJob LoadDocumentJobFile(const std::string& path) { return LoadDocumentJob(ReadDocumentFile(path)); }

// A surface the caller owns, lent to a late-bound call; it is never released through the reference.
ObjectRef BorrowedSurface(Surface& surface) {
  return ObjectRef{std::shared_ptr<void>(static_cast<Surface*>(&surface), [](void*) {}),
                   TypeLibrary::Get().Find(typeid(Surface))};
}

ObjectRef SystemPrinterRef() { return BorrowedSurface(SystemPrinter()); }

void PrintJobOnSystemPrinter(const DocumentJob& job) {
  const JobKind& kind = KindOf(job.type);
  if (kind.document_class.empty()) {
    PrintOnSystemPrinter([](Surface& printer) { PrintLetterheadJob(printer); });
    return;
  }
  const ObjectRef printer = SystemPrinterRef();
  PrintOnSystemPrinter([&](Surface& surface) {
    if (!kind.print_it.empty()) {
      std::vector<Variant> args = ArgumentsFor(job, kind.print_it, nullptr);
      CallMethod(job.printer, kind.print_it, args);
    } else {
      std::vector<Variant> args = ArgumentsFor(job, kind.print_on, &printer);
      CallMethod(job.printer, kind.print_on, args);
      surface.EndDoc();  // this routine leaves ending the document to its caller
    }
  });
}

void PrintJobOnSurface(const DocumentJob& job, Surface& surface) {
  const JobKind& kind = KindOf(job.type);
  if (kind.document_class.empty()) return PrintLetterheadJob(surface);
  const ObjectRef ref = BorrowedSurface(surface);
  std::vector<Variant> args = ArgumentsFor(job, kind.print_on, &ref);
  CallMethod(job.printer, kind.print_on, args);
}

namespace {
void PrintLetterheadJob(Surface& surface) {
  StartDocumentHead(surface, true);
  IgnoreErrors([&] { surface.EndDoc(); });
}
}  // namespace

}  // namespace quorvel
