// The JSON Schema of document files: one definition per class a file fills, built from the
// type library, so the description cannot drift from what the loader accepts.
#include "automation/document_schema.hpp"

#include "automation/document_job.hpp"
#include "automation/type_library.hpp"

namespace quorvel {

namespace {
using nlohmann::json;

std::string RefTo(const std::string& cls) { return "#/$defs/" + cls; }

// A class's settable values and line lists; the line classes are defined as they are met.
void DefineClass(const ClassInfo& cls, json& defs) {
  if (defs.contains(cls.name)) return;
  json properties = json::object();
  defs[cls.name] = json::object();  // placeholder: a line class never holds its own class again
  for (const std::string& field : FileFields(cls)) {
    const MemberInfo* lines = cls.Find(field, MemberKind::PropertyGet);
    const ClassInfo* element = lines ? LineClassOf(*lines) : nullptr;
    if (element) {
      DefineClass(*element, defs);
      properties[field] = {{"type", "array"}, {"items", {{"$ref", RefTo(element->name)}}}};
    } else {
      properties[field] = {{"type", JsonTypeOf(cls.Find(field, MemberKind::PropertyPut)->type.kind)}};
    }
  }
  defs[cls.name] = {{"type", "object"}, {"description", cls.name}, {"properties", properties},
                    {"additionalProperties", false}};
}

json CompanySchema() {
  json properties = json::object();
  for (const std::string& field : CompanyFields()) properties[field] = {{"type", "string"}};
  properties["TopMargin"] = {{"type", "number"}};
  properties["Logo"] = {{"type", "string"}, {"description", "a PNG or JPEG file printed at the letterhead's right"}};
  return {{"type", "object"}, {"description", "SetCompanyInfo's texts, SetTopMargin and SetLogo"},
          {"properties", properties}, {"additionalProperties", false}};
}

// Per document type: which classes "document" and "printer" must follow.
json TypeRules(json& defs) {
  const TypeLibrary& library = TypeLibrary::Get();
  json rules = json::array();
  for (const DocumentClasses& kind : DocumentTypeClasses()) {
    json then = {{"properties", json::object()}};
    for (const auto& [key, name] : {std::pair{"document", kind.document_class}, std::pair{"printer", kind.printer_class}}) {
      if (name.empty()) {
        then["properties"][key] = false;
        continue;
      }
      DefineClass(*library.Find(name), defs);
      then["properties"][key] = {{"$ref", RefTo(name)}};
    }
    rules.push_back({{"if", {{"properties", {{"type", {{"const", kind.type}}}}}}}, {"then", then}});
  }
  return rules;
}
}  // namespace

json DocumentSchema() {
  json defs = json::object();
  json properties = {{"type", {{"enum", DocumentTypes()}, {"description", "which document the file prints"}}},
                     {"company", CompanySchema()},
                     {"document", {{"type", "object"}}},
                     {"printer", {{"type", "object"}}}};
  for (const auto& [key, value] : PrintArguments().items())
    properties[key] = {{"type", value.is_boolean() ? "boolean" : "number"}, {"default", value}};
  json rules = TypeRules(defs);
  return {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
          {"$id", "https://quorvel.example/document.schema.json"},
          {"title", "Quorvel document file"},
          {"type", "object"},
          {"required", {"type"}},
          {"properties", properties},
          {"additionalProperties", false},
          {"allOf", rules},
          {"$defs", defs}};
}

}  // namespace quorvel
