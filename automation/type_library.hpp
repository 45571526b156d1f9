// The Quorvel type library: every creatable class with its dispatch interface, and late binding.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <typeindex>
#include <vector>

#include "automation/variant.hpp"

namespace quorvel {

class Surface;

enum class TypeKind { Void, Boolean, Integer, Long, Single, Double, String, Variant, Object, Collection, Surface };

// A declared type; for objects and collections, the C++ type of the object (or element), whose
// class name the library knows.
struct TypeRef {
  TypeKind kind = TypeKind::Void;
  std::type_index cpp_type = typeid(void);
};

struct ParamInfo {
  std::string name;
  TypeRef type;
  bool by_ref = false;
  bool optional = false;
};

enum class MemberKind { Method, PropertyGet, PropertyPut, PropertyPutRef };

struct MemberInfo {
  std::string name;
  MemberKind kind = MemberKind::Method;
  TypeRef type;  // result of a method or get, value of a put
  std::vector<ParamInfo> params;
  // Runs the member on the object; by-reference arguments are written back into `args`.
  std::function<Variant(void* self, std::vector<Variant>& args)> invoke;
};

struct ClassInfo {
  std::string name;            // "ClassInvoice"
  std::string interface_name;  // "_ClassInvoice"
  std::type_index cpp_type = typeid(void);
  bool creatable = true;
  bool is_collection = false;
  std::function<std::shared_ptr<void>()> create;
  Surface* (*as_surface)(void*) = nullptr;  // set for drawing surfaces
  std::vector<MemberInfo> members;  // in interface order

  // Case-insensitive, as automation hosts look members up.
  const MemberInfo* Find(std::string_view member, MemberKind kind) const;
  bool HasMember(std::string_view member) const;
};

class TypeLibrary {
 public:
  // The library with every class declared (done once, on first use).
  static TypeLibrary& Get();

  ClassInfo& Add(ClassInfo info);
  // By name, with or without the "Quorvel." prefix, any case; nullptr when unknown.
  const ClassInfo* Find(std::string_view name) const;
  const ClassInfo* Find(std::type_index cpp_type) const;
  const std::vector<std::unique_ptr<ClassInfo>>& Classes() const { return classes_; }
  // The name of a declared type, as the interface listing shows it.
  std::string TypeName(const TypeRef& type) const;

 private:
  std::vector<std::unique_ptr<ClassInfo>> classes_;
};

// CreateObject("Quorvel.ClassInvoice"): an unknown or non-creatable class raises error 429.
ObjectRef CreateObject(std::string_view prog_id);

// Late-bound access by member name. A member the object lacks raises error 438; a wrong
// argument type error 13; a value past 16 bits error 6.
Variant GetProperty(const ObjectRef& object, std::string_view name, std::vector<Variant> args = {});
void PutProperty(const ObjectRef& object, std::string_view name, const Variant& value);
Variant CallMethod(const ObjectRef& object, std::string_view name, std::vector<Variant>& args);

// Wraps a C++ object for late binding; its class must be declared.
template <class T>
ObjectRef MakeRef(std::shared_ptr<T> object) {
  if (!object) return {};
  const ClassInfo* cls = TypeLibrary::Get().Find(typeid(T));
  return ObjectRef{std::move(object), cls};
}

// The interface listing of the whole library (class, interface, members with types, in order).
std::string DescribeLibrary();

}  // namespace quorvel
