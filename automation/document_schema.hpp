// The JSON Schema of document files, generated from the type library and the document types.
#pragma once

#include <nlohmann/json.hpp>

namespace quorvel {

// Every key, field and line list a document file may hold, with its JSON type; unknown names are
// not allowed, as the loader refuses them too.
nlohmann::json DocumentSchema();

}  // namespace quorvel
