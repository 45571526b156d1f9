// The one list of document types: the JSON loader, the demonstration and the benchmarks read it.
#pragma once

#include <string>
#include <vector>

#include "foundation/document_kind.hpp"

namespace quorvel {

// Every document type in the order the command lists them, the letterhead (no document) first.
const std::vector<DocumentKind>& DocumentKinds();
// The kind a document file names; an unknown type raises the invalid-argument error listing the
// known ones.
const DocumentKind& FindDocumentKind(const std::string& type);
// The host-visible name the type library gives a C++ class ("ClassInvoice").
std::string ClassNameOf(std::type_index cpp_type);

}  // namespace quorvel
