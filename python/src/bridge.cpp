// Python values and objects to automation variants and back; late-bound members; errors.
#include "python/src/bridge.hpp"

#include <pybind11/stl.h>

#include <limits>

#include "capi/c_support.hpp"
#include "foundation/errors.hpp"

namespace py = pybind11;

namespace quorvel::python {

namespace {
PyObject* error_type = nullptr;  // quorvel.Error, alive as long as the module

[[noreturn]] void Mismatch(const std::string& what) {
  throw AutomationError(err::kTypeMismatch, StandardDescription(err::kTypeMismatch), what);
}

std::vector<Variant> Arguments(const py::args& args) {
  std::vector<Variant> values;
  for (const py::handle& arg : args) values.push_back(ToVariant(arg));
  return values;
}

py::object GetMember(const Object& self, const std::string& name) {
  const ClassInfo& cls = *self.ref.cls;
  const ObjectRef ref = self.ref;
  const MemberInfo* getter = cls.Find(name, MemberKind::PropertyGet);
  if (cls.Find(name, MemberKind::Method) || (getter && !getter->params.empty())) {
    return py::cpp_function([ref, name](py::args args) {
      std::vector<Variant> values = Arguments(args);
      return FromVariant(Locked([&] { return CallMethod(ref, name, values); }));
    }, py::name(name.c_str()));
  }
  if (getter) return FromVariant(Locked([&] { return GetProperty(ref, name); }));
  throw py::attribute_error(cls.name + " has no member \"" + name + "\"");
}

void SetMember(const Object& self, const std::string& name, const py::handle& value) {
  const Variant converted = ToVariant(value);
  Locked([&] { PutProperty(self.ref, name, converted); });
}

py::list MemberNames(const Object& self) {
  py::list names;
  for (const MemberInfo& m : self.ref.cls->members)
    if (!names.contains(m.name)) names.append(m.name);
  return names;
}

// Collections count from 1, as the hosts' own language does; Python iterates them in order.
py::list Lines(const Object& self) {
  if (!self.ref.cls->is_collection) throw py::type_error(self.ref.cls->name + " is not a collection");
  py::list lines;
  const int32_t count = Locked([&] { return GetProperty(self.ref, "Count").AsInt32(); });
  for (int32_t i = 1; i <= count; ++i) {
    std::vector<Variant> index{Variant(i)};
    lines.append(FromVariant(Locked([&] { return CallMethod(self.ref, "Item", index); })));
  }
  return lines;
}
}  // namespace

std::recursive_mutex& LibraryMutex() {
  static std::recursive_mutex mutex;
  return mutex;
}

void AcquireTurn() {
  py::gil_scoped_release release;
  LibraryMutex().lock();
}

void ReleaseTurn() { LibraryMutex().unlock(); }

Variant ToVariant(const py::handle& value) {
  if (value.is_none()) return Variant();
  if (py::isinstance<py::bool_>(value)) return Variant(value.cast<bool>());
  if (py::isinstance<py::int_>(value)) {
    const long long number = value.cast<long long>();
    if (number < std::numeric_limits<int32_t>::min() || number > std::numeric_limits<int32_t>::max())
      throw AutomationError(err::kOverflow, StandardDescription(err::kOverflow), "a whole number past 32 bits");
    return Variant(static_cast<int32_t>(number));
  }
  if (py::isinstance<py::float_>(value)) return Variant(value.cast<double>());
  if (py::isinstance<py::str>(value)) return Variant(value.cast<std::string>());
  if (py::isinstance<Object>(value)) return Variant(value.cast<const Object&>().ref);
  Mismatch(std::string("a Python ") + py::str(value.get_type().attr("__name__")).cast<std::string>() +
           " is not a text, number, true/false, None or Quorvel object");
}

py::object FromVariant(const Variant& value) {
  if (const auto* v = value.Get<bool>()) return py::bool_(*v);
  if (const auto* v = value.Get<int16_t>()) return py::int_(*v);
  if (const auto* v = value.Get<int32_t>()) return py::int_(*v);
  if (const auto* v = value.Get<float>()) return py::float_(*v);
  if (const auto* v = value.Get<double>()) return py::float_(*v);
  if (const auto* v = value.Get<std::string>()) return py::str(*v);
  if (const auto* v = value.Get<ObjectRef>()) return *v ? py::cast(Object{*v}) : py::none();
  return py::none();
}

py::list ClassList() {
  const TypeLibrary& library = TypeLibrary::Get();
  py::list classes;
  for (const auto& cls : library.Classes()) {
    py::list members;
    for (const MemberInfo& m : cls->members) {
      py::list params;
      for (const ParamInfo& p : m.params) params.append(py::make_tuple(p.name, library.TypeName(p.type), p.optional));
      const char* kind = m.kind == MemberKind::Method ? "method" : m.kind == MemberKind::PropertyGet ? "get" : "put";
      members.append(py::make_tuple(m.name, kind, library.TypeName(m.type), params));
    }
    classes.append(py::make_tuple(cls->name, cls->creatable, cls->is_collection, members));
  }
  return classes;
}

// The C interface checks the size; its handle is given back once the reference is taken.
Object NewPreview(double width, double height) {
  quorvel_object* handle = nullptr;
  const int32_t status = quorvel_preview_create(width, height, &handle);
  if (status != QUORVEL_OK) {
    int32_t number = 0;
    const char* message = "";
    quorvel_last_error(&number, &message);
    throw AutomationError(number, message);
  }
  Object preview{capi::RefOf(handle, "preview")};
  quorvel_release(handle);
  return preview;
}

void DefineErrors(py::module_& module) {
  error_type = PyErr_NewExceptionWithDoc("quorvel.Error", "A Quorvel automation error: .number and .message",
                                         PyExc_RuntimeError, nullptr);
  module.add_object("Error", py::handle(error_type));
  py::register_exception_translator([](std::exception_ptr failure) {
    try {
      if (failure) std::rethrow_exception(failure);
    } catch (const AutomationError& e) {
      py::object error = py::reinterpret_borrow<py::object>(error_type)(std::string(e.what()));
      error.attr("number") = e.Number();
      error.attr("message") = std::string(e.what());
      error.attr("description") = e.Description();
      error.attr("context") = e.Context();
      PyErr_SetObject(error_type, error.ptr());
    }
  });
}

void DefineObject(py::module_& module) {
  py::class_<Object>(module, "Object", "A Quorvel object; its members are those of its class in the type library")
      .def("__getattr__", &GetMember)
      .def("__setattr__", &SetMember)
      .def("__dir__", &MemberNames)
      .def("__iter__", [](const Object& self) { return py::iter(Lines(self)); })
      .def("__len__", [](const Object& self) { return py::len(Lines(self)); })
      .def("__eq__", [](const Object& self, const py::object& other) {
        return py::isinstance<Object>(other) && other.cast<const Object&>().ref == self.ref;
      })
      .def("__hash__", [](const Object& self) { return std::hash<void*>()(self.ref.ptr.get()); })
      .def("__repr__", [](const Object& self) { return "<quorvel." + self.ref.cls->name + ">"; })
      .def_property_readonly("class_name", [](const Object& self) { return self.ref.cls->name; });
}

}  // namespace quorvel::python
