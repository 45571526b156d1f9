// Between Python and the type library: objects, values, errors, and the one turn at a time that
// the process-wide printer and company profile need.
#pragma once

#include <pybind11/pybind11.h>

#include <mutex>
#include <string>

#include "automation/type_library.hpp"

namespace quorvel::python {

// A Python handle to one automation object; members are looked up by name on each use.
struct Object {
  ObjectRef ref;
};

// One thread at a time inside the library: the system printer and the company profile belong to
// the whole process. Waiting happens without the interpreter lock, so other threads run meanwhile.
std::recursive_mutex& LibraryMutex();

template <class Body>
auto Locked(Body&& body) {
  pybind11::gil_scoped_release release;
  std::lock_guard<std::recursive_mutex> lock(LibraryMutex());
  return body();
}

// A turn held across several calls (quorvel.printing()): the same lock, kept by this thread.
void AcquireTurn();
void ReleaseTurn();

Variant ToVariant(const pybind11::handle& value);
pybind11::object FromVariant(const Variant& value);

// The type library as plain data, for the type stub and for listing classes.
pybind11::list ClassList();
Object NewPreview(double width, double height);

void DefineErrors(pybind11::module_& module);
void DefineObject(pybind11::module_& module);
void DefineFunctions(pybind11::module_& module);

}  // namespace quorvel::python
