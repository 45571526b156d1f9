// Shared pieces of the C interface: object handles, variant conversion and the error guard.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <string>

#include "automation/type_library.hpp"
#include "automation/variant.hpp"
#include "foundation/errors.hpp"
#include "quorvel.h"

namespace quorvel::capi {

constexpr int32_t kOutOfMemory = 7;
constexpr int32_t kInternalError = 51;

// Records the calling thread's last error; never throws.
int32_t RecordError(int32_t number, const char* description, const std::string& context) noexcept;
void RecordSuccess() noexcept;

// Runs the body of one C entry point: every exception becomes the returned status and the
// thread's last error, so nothing unwinds into the host.
template <class Body>
int32_t Guard(Body&& body) noexcept {
  try {
    body();
    RecordSuccess();
    return QUORVEL_OK;
  } catch (const AutomationError& e) {
    return RecordError(e.Number() != 0 ? e.Number() : kInternalError, e.Description().c_str(), e.Context());
  } catch (const std::bad_alloc&) {
    return RecordError(kOutOfMemory, "Out of memory", "");
  } catch (const std::exception& e) {
    return RecordError(kInternalError, "Internal error", e.what());
  } catch (...) {
    return RecordError(kInternalError, "Internal error", "");
  }
}

// Handles are tokens, never pointers the library follows: each holds one reference in a
// process-wide table and is never given out again once released, so a released or made-up
// handle is recognised and refused instead of being followed into freed memory.
//
// The object a handle refers to; a null, released or unknown handle raises "object not set"
// naming `what`.
ObjectRef RefOf(const quorvel_object* handle, const char* what);
quorvel_object* NewHandle(ObjectRef ref);
// Drops the handle's reference; false when the handle was not alive.
bool ReleaseHandle(const quorvel_object* handle) noexcept;
// A C text argument; null raises the invalid-argument error naming `what`.
std::string TextArg(const char* text, const char* what);
char* CopyText(const std::string& text);

Variant FromC(const quorvel_variant& value);
// Fills `out` from scratch; texts and objects are allocated and marked owned.
void ToC(const Variant& value, quorvel_variant& out);
void Clear(quorvel_variant& value) noexcept;
// Whether a by-reference argument came back unchanged (same text, number or object).
bool SameValue(const Variant& before, const Variant& after);

}  // namespace quorvel::capi
