// The interface listing of the type library, as `quorvel typelib` prints it.
#include <sstream>

#include "automation/type_library.hpp"

namespace quorvel {

namespace {
const char* KindWord(MemberKind kind) {
  switch (kind) {
    case MemberKind::Method: return "method";
    case MemberKind::PropertyGet: return "property get";
    case MemberKind::PropertyPut: return "property let";
    case MemberKind::PropertyPutRef: return "property set";
  }
  return "";
}

std::string Signature(const TypeLibrary& library, const MemberInfo& m) {
  std::string text = m.name;
  if (m.kind == MemberKind::Method) {
    text += "(";
    for (size_t i = 0; i < m.params.size(); ++i) {
      const ParamInfo& p = m.params[i];
      if (i > 0) text += ", ";
      if (p.optional) text += "[Optional] ";
      text += p.by_ref ? "ByRef " : "ByVal ";
      text += p.name + " As " + library.TypeName(p.type);
    }
    text += ")";
  }
  const std::string type = library.TypeName(m.type);
  if (!type.empty()) text += " As " + type;
  return text;
}
}  // namespace

std::string DescribeLibrary() {
  const TypeLibrary& library = TypeLibrary::Get();
  std::ostringstream out;
  out << "Library Quorvel\n";
  for (const auto& cls : library.Classes()) {
    if (cls->is_collection) continue;
    out << "\nClass " << cls->name << (cls->creatable ? " (creatable as Quorvel." + cls->name + ")" : "")
        << "\n  Interface " << cls->interface_name << "\n";
    for (const MemberInfo& m : cls->members) out << "    " << KindWord(m.kind) << "  " << Signature(library, m) << "\n";
  }
  return out.str();
}

}  // namespace quorvel
