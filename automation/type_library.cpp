// Class lookup, creation by name and late-bound member access.
#include "automation/type_library.hpp"

#include <algorithm>

#include "foundation/errors.hpp"

namespace quorvel {

void DeclareAllClasses(TypeLibrary& library);  // automation/declarations.cpp

namespace {
std::string Folded(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return std::tolower(c); });
  return out;
}

constexpr int32_t kCannotCreate = 429;

const ClassInfo& ClassOf(const ObjectRef& object) {
  if (!object.ptr || !object.cls) Raise(err::kObjectNotSet, "no object");
  return *object.cls;
}

[[noreturn]] void NoSuchMember(const ClassInfo& cls, std::string_view name, const char* what) {
  Raise(err::kNotSupported, cls.name + " has no " + what + " \"" + std::string(name) + "\"");
}
}  // namespace

const MemberInfo* ClassInfo::Find(std::string_view member, MemberKind kind) const {
  const std::string wanted = Folded(member);
  for (const MemberInfo& m : members)
    if (m.kind == kind && Folded(m.name) == wanted) return &m;
  return nullptr;
}

bool ClassInfo::HasMember(std::string_view member) const {
  const std::string wanted = Folded(member);
  return std::any_of(members.begin(), members.end(), [&](const MemberInfo& m) { return Folded(m.name) == wanted; });
}

TypeLibrary& TypeLibrary::Get() {
  static TypeLibrary* library = [] {
    auto* lib = new TypeLibrary;
    DeclareAllClasses(*lib);
    return lib;
  }();
  return *library;
}

ClassInfo& TypeLibrary::Add(ClassInfo info) {
  classes_.push_back(std::make_unique<ClassInfo>(std::move(info)));
  return *classes_.back();
}

const ClassInfo* TypeLibrary::Find(std::string_view name) const {
  std::string wanted = Folded(name);
  if (wanted.rfind("quorvel.", 0) == 0) wanted.erase(0, 8);
  for (const auto& cls : classes_)
    if (!cls->is_collection && Folded(cls->name) == wanted) return cls.get();
  return nullptr;
}

const ClassInfo* TypeLibrary::Find(std::type_index cpp_type) const {
  for (const auto& cls : classes_)
    if (cls->cpp_type == cpp_type) return cls.get();
  return nullptr;
}

std::string TypeLibrary::TypeName(const TypeRef& type) const {
  switch (type.kind) {
    case TypeKind::Void: return "";
    case TypeKind::Boolean: return "Boolean";
    case TypeKind::Integer: return "Integer";
    case TypeKind::Long: return "Long";
    case TypeKind::Single: return "Single";
    case TypeKind::Double: return "Double";
    case TypeKind::String: return "String";
    case TypeKind::Variant: return "Variant";
    case TypeKind::Surface: return "Object";
    case TypeKind::Object:
    case TypeKind::Collection: {
      const ClassInfo* cls = Find(type.cpp_type);
      return cls ? cls->name : "Object";
    }
  }
  return "?";
}

ObjectRef CreateObject(std::string_view prog_id) {
  const ClassInfo* cls = TypeLibrary::Get().Find(prog_id);
  if (!cls || !cls->creatable || !cls->create)
    Raise(kCannotCreate, "there is no creatable class \"" + std::string(prog_id) + "\"");
  return ObjectRef{cls->create(), cls};
}

Variant GetProperty(const ObjectRef& object, std::string_view name, std::vector<Variant> args) {
  const ClassInfo& cls = ClassOf(object);
  const MemberInfo* m = cls.Find(name, MemberKind::PropertyGet);
  if (!m) m = cls.Find(name, MemberKind::Method);  // a method without arguments reads like a property
  if (!m) NoSuchMember(cls, name, "property");
  return m->invoke(object.ptr.get(), args);
}

void PutProperty(const ObjectRef& object, std::string_view name, const Variant& value) {
  const ClassInfo& cls = ClassOf(object);
  const bool is_object = value.Type() == VarType::Object || value.Type() == VarType::Collection;
  const MemberInfo* m = cls.Find(name, is_object ? MemberKind::PropertyPutRef : MemberKind::PropertyPut);
  if (!m) m = cls.Find(name, is_object ? MemberKind::PropertyPut : MemberKind::PropertyPutRef);
  if (!m) NoSuchMember(cls, name, "settable property");
  std::vector<Variant> args{value};
  m->invoke(object.ptr.get(), args);
}

Variant CallMethod(const ObjectRef& object, std::string_view name, std::vector<Variant>& args) {
  const ClassInfo& cls = ClassOf(object);
  const MemberInfo* m = cls.Find(name, MemberKind::Method);
  if (!m) m = cls.Find(name, MemberKind::PropertyGet);
  if (!m) NoSuchMember(cls, name, "method");
  return m->invoke(object.ptr.get(), args);
}

}  // namespace quorvel
