// Declaring a class's dispatch interface once: each member is bound to the C++ member it calls,
// and its parameter and result types are read off the C++ signature.
#pragma once

#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/type_library.hpp"
#include "foundation/collection.hpp"
#include "foundation/errors.hpp"
#include "foundation/surface.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace binding {

constexpr int32_t kWrongArgumentCount = 450;
constexpr int32_t kArgumentNotOptional = 449;

template <class U> struct IsCollection : std::false_type {};
template <class U> struct IsCollection<Collection<U>> : std::true_type {};

template <class U>
TypeRef ObjectType() {
  return TypeRef{IsCollection<U>::value ? TypeKind::Collection : TypeKind::Object, typeid(U)};
}

// The object of class U held by `v`; Empty gives nullptr; another class raises error 13.
template <class U>
std::shared_ptr<U> TakeObject(const Variant& v) {
  const ObjectRef ref = v.AsObject();
  if (!ref) return nullptr;
  if (!ref.cls || ref.cls->cpp_type != typeid(U)) {
    const ClassInfo* wanted = TypeLibrary::Get().Find(typeid(U));
    Raise(err::kTypeMismatch, (ref.cls ? ref.cls->name : std::string("an object")) + " given where " +
                                  (wanted ? wanted->name : std::string("another class")) + " is expected");
  }
  return std::static_pointer_cast<U>(ref.ptr);
}

inline std::string TakeText(const Variant& v) {
  std::string text = v.AsString();
  RequireUtf8(text, "the text");
  return text;
}

// How one C++ parameter type is taken from a Variant, passed, and written back when by reference.
template <class A, class = void>
struct Arg;

#define QUORVEL_VALUE_ARG(CppType, Kind, Convert)                                   \
  template <> struct Arg<CppType> {                                                 \
    static constexpr bool by_ref = false;                                           \
    using Holder = std::decay_t<CppType>;                                           \
    static TypeRef Type() { return TypeRef{Kind}; }                                 \
    static Holder Take(const Variant& v) { return Convert; }                        \
    static CppType Pass(Holder& h) { return h; }                                    \
    static Variant Back(const Holder& h) { return Variant(h); }                     \
  };                                                                                \
  template <> struct Arg<CppType&> {                                                \
    static constexpr bool by_ref = true;                                            \
    using Holder = CppType;                                                         \
    static TypeRef Type() { return TypeRef{Kind}; }                                 \
    static Holder Take(const Variant& v) { return Convert; }                        \
    static CppType& Pass(Holder& h) { return h; }                                   \
    static Variant Back(const Holder& h) { return Variant(h); }                     \
  };

QUORVEL_VALUE_ARG(bool, TypeKind::Boolean, v.AsBool())
QUORVEL_VALUE_ARG(int16_t, TypeKind::Integer, v.AsInt16())
QUORVEL_VALUE_ARG(int32_t, TypeKind::Long, v.AsInt32())
QUORVEL_VALUE_ARG(double, TypeKind::Double, v.AsDouble())
QUORVEL_VALUE_ARG(std::string, TypeKind::String, TakeText(v))
#undef QUORVEL_VALUE_ARG

template <> struct Arg<const std::string&> : Arg<std::string> {
  static const std::string& Pass(Holder& h) { return h; }
};
template <> struct Arg<Variant> {
  static constexpr bool by_ref = false;
  using Holder = Variant;
  static TypeRef Type() { return TypeRef{TypeKind::Variant}; }
  static Holder Take(const Variant& v) { return v; }
  static Variant Pass(Holder& h) { return h; }
  static Variant Back(const Holder& h) { return h; }
};
template <> struct Arg<Surface&> {
  static constexpr bool by_ref = true;
  using Holder = Surface*;
  static TypeRef Type() { return TypeRef{TypeKind::Surface}; }
  static Holder Take(const Variant& v) {
    const ObjectRef ref = v.AsObject();
    if (!ref) Raise(err::kObjectNotSet, "no drawing surface given");
    if (!ref.cls || !ref.cls->as_surface) Raise(err::kTypeMismatch, "the object given is not a drawing surface");
    return ref.cls->as_surface(ref.ptr.get());
  }
  static Surface& Pass(Holder& h) { return *h; }
  static Variant Back(const Holder&) { return Variant(); }  // never used: a surface is lent, not returned
};
template <class U> struct Arg<std::shared_ptr<U>> {
  static constexpr bool by_ref = false;
  using Holder = std::shared_ptr<U>;
  static TypeRef Type() { return ObjectType<U>(); }
  static Holder Take(const Variant& v) { return TakeObject<U>(v); }
  static Holder Pass(Holder& h) { return h; }
  static Variant Back(const Holder& h) { return MakeRef(h); }
};
template <class U> struct Arg<std::shared_ptr<U>&> : Arg<std::shared_ptr<U>> {
  static constexpr bool by_ref = true;
  static std::shared_ptr<U>& Pass(std::shared_ptr<U>& h) { return h; }
};
template <class U> struct Arg<const std::shared_ptr<U>&> : Arg<std::shared_ptr<U>> {
  static const std::shared_ptr<U>& Pass(const std::shared_ptr<U>& h) { return h; }
};

template <class U> struct IsSharedPtr : std::false_type {};
template <class U> struct IsSharedPtr<std::shared_ptr<U>> : std::true_type {};
template <class U>
constexpr bool kIsDocument = std::is_class_v<U> && !std::is_const_v<U> && !std::is_same_v<U, std::string> &&
                             !std::is_same_v<U, Surface> && !std::is_same_v<U, Variant> && !IsSharedPtr<U>::value;

// A document passed by reference (ClassInvoice&): it must be set.
template <class U>
struct Arg<U&, std::enable_if_t<kIsDocument<U>>> {
  static constexpr bool by_ref = true;
  using Holder = std::shared_ptr<U>;
  static TypeRef Type() { return ObjectType<U>(); }
  static Holder Take(const Variant& v) {
    Holder h = TakeObject<U>(v);
    if (!h) Raise(err::kObjectNotSet, "no object given");
    return h;
  }
  static U& Pass(Holder& h) { return *h; }
  static Variant Back(const Holder& h) { return MakeRef(h); }
};
// A line passed for reading only (const ClassPayment&).
template <class U>
struct Arg<const U&, std::enable_if_t<kIsDocument<U>>> : Arg<U&> {
  static constexpr bool by_ref = false;
  static const U& Pass(std::shared_ptr<U>& h) { return *h; }
};

// Results back to a Variant.
template <class R> Variant Result(R&& r) {
  using D = std::decay_t<R>;
  if constexpr (std::is_same_v<D, Variant>) return r;
  else if constexpr (requires { typename D::element_type; }) return MakeRef(r);
  else return Variant(D(r));
}
template <class R> TypeRef ResultType() {
  using D = std::decay_t<R>;
  if constexpr (std::is_void_v<D>) return TypeRef{TypeKind::Void};
  else if constexpr (requires { typename D::element_type; }) return ObjectType<typename D::element_type>();
  else return Arg<D>::Type();
}

template <class T, class R, class... A, class F, size_t... I>
Variant CallWith(F& f, T& self, std::vector<Variant>& args, const std::vector<ParamInfo>& params,
                 const std::string& where, std::index_sequence<I...>) {
  std::tuple<typename Arg<A>::Holder...> holders;
  [[maybe_unused]] auto take = [&](auto& holder, size_t i, auto tag) {
    using Traits = Arg<typename decltype(tag)::type>;
    try {
      holder = Traits::Take(i < args.size() ? args[i] : Variant());
    } catch (const AutomationError& e) {
      throw AutomationError(e.Number(), e.Description(), where + " argument " + params[i].name + ": " + e.Context());
    }
  };
  (take(std::get<I>(holders), I, std::type_identity<A>{}), ...);
  [[maybe_unused]] auto write_back = [&] {
    ((Arg<A>::by_ref && !std::is_same_v<A, Surface&> && I < args.size() ? (void)(args[I] = Arg<A>::Back(std::get<I>(holders))) : (void)0), ...);
  };
  if constexpr (std::is_void_v<R>) {
    f(self, Arg<A>::Pass(std::get<I>(holders))...);
    write_back();
    return Variant();
  } else {
    Variant result = Result(f(self, Arg<A>::Pass(std::get<I>(holders))...));
    write_back();
    return result;
  }
}

}  // namespace binding

// A parameter as the interface declares it: "name", optionally "ByRef name" / "ByVal name" where
// the interface passes it otherwise than the C++ signature suggests (a by-reference argument that
// the routine never writes back), and "name As Variant" for a Variant-typed one.
inline void ApplyParamDeclaration(std::string declared, ParamInfo& p) {
  if (declared.rfind("ByRef ", 0) == 0) p.by_ref = true, declared.erase(0, 6);
  else if (declared.rfind("ByVal ", 0) == 0) p.by_ref = false, declared.erase(0, 6);
  const std::string as_variant = " As Variant";
  if (declared.size() > as_variant.size() && declared.compare(declared.size() - as_variant.size(), as_variant.size(), as_variant) == 0) {
    p.type.kind = TypeKind::Variant;
    declared.erase(declared.size() - as_variant.size());
  }
  p.name = std::move(declared);
}

template <class T>
class ClassBuilder {
 public:
  ClassBuilder(TypeLibrary& library, std::string name, bool creatable = true)
      : info_(library.Add(ClassInfo{name, "_" + name, typeid(T), creatable, false, nullptr, nullptr, {}})) {
    if constexpr (std::is_default_constructible_v<T>)
      if (creatable) info_.create = [] { return std::static_pointer_cast<void>(std::make_shared<T>()); };
  }

  // A read/write String or Boolean field.
  template <class V>
  ClassBuilder& Field(const std::string& name, V T::*field) {
    Get<V>(name, [field](T& self) { return self.*field; });
    return Put<V>(name, [field](T& self, V value) { self.*field = std::move(value); });
  }

  template <class R, class F>
  ClassBuilder& Get(const std::string& name, F f) {
    return Add<R, F>(name, MemberKind::PropertyGet, std::move(f), {});
  }

  // A property put; an object value makes it a put-by-reference (Set).
  template <class V, class F>
  ClassBuilder& Put(const std::string& name, F f) {
    const bool by_ref = requires { typename std::decay_t<V>::element_type; };
    Add<void, F, V>(name, by_ref ? MemberKind::PropertyPutRef : MemberKind::PropertyPut, std::move(f), {name});
    return *this;
  }

  // A method bound to a member function; `params` names its parameters in order.
  template <class R, class... A>
  ClassBuilder& Method(const std::string& name, R (T::*fn)(A...), std::vector<std::string> params,
                       size_t optional_from = SIZE_MAX) {
    auto call = [fn](T& self, A... args) -> R { return (self.*fn)(std::forward<A>(args)...); };
    return Add<R, decltype(call), A...>(name, MemberKind::Method, call, std::move(params), optional_from);
  }

  // A method given as a callable taking the object first.
  template <class R, class... A, class F>
  ClassBuilder& MethodFn(const std::string& name, F f, std::vector<std::string> params,
                         size_t optional_from = SIZE_MAX) {
    return Add<R, F, A...>(name, MemberKind::Method, std::move(f), std::move(params), optional_from);
  }

  ClassBuilder& SurfaceCast(Surface* (*cast)(void*)) {
    info_.as_surface = cast;
    return *this;
  }

  // The declared result type of the member just added, where the interface declares a wider
  // one than the C++ signature gives (a Variant holding text).
  ClassBuilder& Returns(TypeKind kind) {
    info_.members.back().type.kind = kind;
    return *this;
  }

  ClassInfo& Info() { return info_; }

 private:
  template <class R, class F, class... A>
  ClassBuilder& Add(const std::string& name, MemberKind kind, F f, std::vector<std::string> names,
                    size_t optional_from = SIZE_MAX) {
    MemberInfo m;
    m.name = name;
    m.kind = kind;
    m.type = kind == MemberKind::Method || kind == MemberKind::PropertyGet ? binding::ResultType<R>()
                                                                           : TypeRef{};
    const TypeRef types[] = {binding::Arg<A>::Type()..., TypeRef{}};
    const bool refs[] = {binding::Arg<A>::by_ref..., false};
    for (size_t i = 0; i < sizeof...(A); ++i) {
      ParamInfo p{"arg" + std::to_string(i + 1), types[i], refs[i] && kind == MemberKind::Method, i >= optional_from};
      if (i < names.size()) ApplyParamDeclaration(names[i], p);
      m.params.push_back(std::move(p));
    }
    if (kind != MemberKind::Method && sizeof...(A) == 1) m.type = types[0];
    const std::string where = info_.name + "." + name;
    const std::vector<ParamInfo> params = m.params;
    m.invoke = [f, where, params](void* self, std::vector<Variant>& args) mutable -> Variant {
      if (args.size() > sizeof...(A))
        Raise(binding::kWrongArgumentCount, where + " takes " + std::to_string(sizeof...(A)) + " arguments");
      for (size_t i = args.size(); i < params.size(); ++i)
        if (!params[i].optional) Raise(binding::kArgumentNotOptional, where + " needs " + params[i].name);
      return binding::CallWith<T, R, A...>(f, *static_cast<T*>(self), args, params, where,
                                           std::index_sequence_for<A...>{});
    };
    info_.members.push_back(std::move(m));
    return *this;
  }

  ClassInfo& info_;
};

// The automation class of a collection of U: Add, Count, Item, Remove (1-based).
template <class U>
void DeclareCollection(TypeLibrary& library) {
  if (library.Find(typeid(Collection<U>))) return;
  ClassBuilder<Collection<U>> b(library, "Collection", false);
  b.Info().is_collection = true;
  b.template MethodFn<void, std::shared_ptr<U>>("Add", [](Collection<U>& c, std::shared_ptr<U> item) { c.Add(item); }, {"Item"});
  b.template MethodFn<int32_t>("Count", [](Collection<U>& c) { return c.Count(); }, {});
  b.template MethodFn<std::shared_ptr<U>, int32_t>("Item", [](Collection<U>& c, int32_t i) { return c.Item(i); }, {"Index"});
  b.template MethodFn<void, int32_t>("Remove", [](Collection<U>& c, int32_t i) { c.Remove(i); }, {"Index"});
}

}  // namespace quorvel
