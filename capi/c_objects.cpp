// The C entry points for objects: creation by class name, late-bound get/put/call, release.
#include <cstdlib>
#include <vector>

#include "capi/c_support.hpp"

using quorvel::ObjectRef;
using quorvel::Variant;
namespace capi = quorvel::capi;

namespace {

// The member a late-bound call will run, looked up the way CallMethod looks it up, so that the
// by-reference parameters are known before the call.
const quorvel::MemberInfo* CalledMember(const ObjectRef& object, const std::string& name) {
  const quorvel::MemberInfo* m = object.cls ? object.cls->Find(name, quorvel::MemberKind::Method) : nullptr;
  if (!m && object.cls) m = object.cls->Find(name, quorvel::MemberKind::PropertyGet);
  return m;
}

// Copies changed by-reference arguments back into the caller's array. A surface argument is an
// object lent for drawing: it is never replaced.
void WriteBack(const quorvel::MemberInfo* member, const std::vector<Variant>& before,
               const std::vector<Variant>& after, quorvel_variant* args) {
  if (!member) return;
  for (size_t i = 0; i < before.size() && i < member->params.size(); ++i) {
    const quorvel::ParamInfo& p = member->params[i];
    if (!p.by_ref || p.type.kind == quorvel::TypeKind::Surface) continue;
    if (capi::SameValue(before[i], after[i])) continue;
    quorvel_variant fresh;
    capi::ToC(after[i], fresh);
    capi::Clear(args[i]);
    args[i] = fresh;
  }
}

}  // namespace

extern "C" {

int32_t quorvel_create(const char* class_name, quorvel_object** object) {
  return capi::Guard([&] {
    if (!object) quorvel::Raise(quorvel::err::kInvalidArgument, "no place for the new object given");
    *object = nullptr;
    ObjectRef created = quorvel::CreateObject(capi::TextArg(class_name, "class name"));
    *object = capi::NewHandle(std::move(created));
  });
}

int32_t quorvel_get(quorvel_object* object, const char* member, quorvel_variant* result) {
  return capi::Guard([&] {
    const std::string name = capi::TextArg(member, "member name");
    const Variant value = quorvel::GetProperty(capi::RefOf(object, "object"), name);
    if (result) capi::ToC(value, *result);
  });
}

int32_t quorvel_put(quorvel_object* object, const char* member, const quorvel_variant* value) {
  return capi::Guard([&] {
    const std::string name = capi::TextArg(member, "member name");
    if (!value) quorvel::Raise(quorvel::err::kInvalidArgument, "no value given for " + name);
    quorvel::PutProperty(capi::RefOf(object, "object"), name, capi::FromC(*value));
  });
}

int32_t quorvel_call(quorvel_object* object, const char* member, quorvel_variant* args, int32_t count,
                     quorvel_variant* result) {
  return capi::Guard([&] {
    const std::string name = capi::TextArg(member, "member name");
    const ObjectRef& target = capi::RefOf(object, "object");
    if (count < 0 || (count > 0 && !args))
      quorvel::Raise(quorvel::err::kInvalidArgument, name + ": no arguments array for " + std::to_string(count));
    std::vector<Variant> before;
    for (int32_t i = 0; i < count; ++i) before.push_back(capi::FromC(args[i]));
    std::vector<Variant> after = before;
    const Variant value = quorvel::CallMethod(target, name, after);
    WriteBack(CalledMember(target, name), before, after, args);
    if (result) capi::ToC(value, *result);
  });
}

// Giving back a live handle never fails and leaves the last error alone, so a host may clean up
// after a failed call before it asks what went wrong. A handle given back twice, or never given
// out, is refused with "object not set" (a host bug to report, not a crash).
int32_t quorvel_release(quorvel_object* object) {
  if (!object || capi::ReleaseHandle(object)) return QUORVEL_OK;
  return capi::RecordError(quorvel::err::kObjectNotSet, quorvel::StandardDescription(quorvel::err::kObjectNotSet).c_str(),
                           "quorvel_release: the handle was released before or never given out");
}

int32_t quorvel_variant_clear(quorvel_variant* value) {
  if (value) capi::Clear(*value);
  return QUORVEL_OK;
}

int32_t quorvel_text_free(char* text) {
  std::free(text);
  return QUORVEL_OK;
}

int32_t quorvel_same_object(const quorvel_object* first, const quorvel_object* second, int32_t* same) {
  return capi::Guard([&] {
    if (!same) quorvel::Raise(quorvel::err::kInvalidArgument, "no place for the answer given");
    *same = capi::RefOf(first, "first object") == capi::RefOf(second, "second object") ? 1 : 0;
  });
}

}  // extern "C"
