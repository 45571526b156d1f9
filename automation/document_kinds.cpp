// The registration of every document type: one line per type, each kind declared in its folder.
#include "automation/document_kinds.hpp"

#include "automation/nearest_name.hpp"
#include "automation/type_library.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"

namespace quorvel {

namespace {

// The company letterhead alone: no document object and no printer, drawn straight on the surface.
DocumentKind LetterheadKind() {
  DocumentKind kind;
  kind.type = "letterhead";
  kind.samples = {{"letterhead", ""}};
  kind.print_on = [](void*, void*, Surface& surface, PrintCallArguments&) { StartDocumentHead(surface, true); };
  return kind;
}

}  // namespace

const std::vector<DocumentKind>& DocumentKinds() {
  static const std::vector<DocumentKind> kinds = {
      LetterheadKind(), VoucherKind(),   InvoiceKind(),    DeliveryNoteKind(),
      ReceiptKind(),    StatementKind(), ChequeListKind(),
  };
  return kinds;
}

const DocumentKind& FindDocumentKind(const std::string& type) {
  for (const DocumentKind& kind : DocumentKinds())
    if (kind.type == type) return kind;
  std::string known;
  for (const DocumentKind& kind : DocumentKinds()) known += (known.empty() ? "" : ", ") + kind.type;
  std::vector<std::string> types;
  for (const DocumentKind& kind : DocumentKinds()) types.push_back(kind.type);
  Raise(err::kInvalidArgument, "\"type\": unknown document type \"" + type + "\"" + DidYouMean(type, types) +
                                   " (known: " + known + ")");
}

std::string ClassNameOf(std::type_index cpp_type) {
  const ClassInfo* cls = TypeLibrary::Get().Find(cpp_type);
  // Every kind's classes are declared in the type library; a missing one is a build-time slip
  // that the type-library tests catch.
  if (!cls) Raise(err::kNotSupported, std::string("class not in the type library: ") + cpp_type.name());
  return cls->name;
}

}  // namespace quorvel
