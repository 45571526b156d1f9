// Fuzzes late binding: CreateObject, GetProperty, PutProperty and CallMethod with fuzzed names
// and Variant arguments, on objects of every class and on a preview and the system printer.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "automation/document_job.hpp"
#include "automation/type_library.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"

namespace {

using namespace quorvel;

constexpr int kMaxSteps = 24;  // calls per input: enough to build and print a small document

// A class name: mostly one the library knows (any case, with or without the prefix), or any text.
std::string ClassName(FuzzedDataProvider& in) {
  const auto& classes = TypeLibrary::Get().Classes();
  if (in.ConsumeBool() || classes.empty()) return in.ConsumeRandomLengthString(40);
  std::string name = classes[in.ConsumeIntegralInRange<size_t>(0, classes.size() - 1)]->name;
  if (in.ConsumeBool()) name = "Quorvel." + name;
  if (in.ConsumeBool())
    for (char& c : name) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
  return name;
}

// A member name of the object's class, or any text.
std::string MemberName(FuzzedDataProvider& in, const ObjectRef& object) {
  if (!object.cls || object.cls->members.empty() || in.ConsumeBool()) return in.ConsumeRandomLengthString(40);
  return object.cls->members[in.ConsumeIntegralInRange<size_t>(0, object.cls->members.size() - 1)].name;
}

Variant AnyVariant(FuzzedDataProvider& in, const std::vector<ObjectRef>& objects) {
  switch (in.ConsumeIntegralInRange<int>(0, 8)) {
    case 0: return Variant();
    case 1: return Variant(in.ConsumeBool());
    case 2: return Variant(in.ConsumeIntegral<int16_t>());
    case 3: return Variant(in.ConsumeIntegral<int32_t>());
    case 4: return Variant(in.ConsumeFloatingPoint<float>());
    case 5: return Variant(in.ConsumeFloatingPoint<double>());
    case 6:
    case 7: return Variant(in.ConsumeRandomLengthString(200));
    default:
      if (objects.empty()) return Variant();
      return Variant(objects[in.ConsumeIntegralInRange<size_t>(0, objects.size() - 1)]);
  }
}

// Members that write files where their argument says are left out: a fuzzed path could be anywhere.
bool WritesFiles(const std::string& member) {
  return member.size() >= 5 && (member.compare(0, 5, "Write") == 0 || member.compare(0, 5, "write") == 0);
}

void Step(FuzzedDataProvider& in, std::vector<ObjectRef>& objects) {
  const int what = in.ConsumeIntegralInRange<int>(0, 3);
  if (what == 0 || objects.empty()) {
    objects.push_back(CreateObject(ClassName(in)));
    return;
  }
  const ObjectRef& object = objects[in.ConsumeIntegralInRange<size_t>(0, objects.size() - 1)];
  const std::string member = MemberName(in, object);
  if (WritesFiles(member)) return;
  std::vector<Variant> args;
  const size_t count = in.ConsumeIntegralInRange<size_t>(0, 7);
  for (size_t i = 0; i < count; ++i) args.push_back(AnyVariant(in, objects));
  if (what == 1) {
    const Variant value = GetProperty(object, member, args);
    if (const ObjectRef* got = value.Get<ObjectRef>(); got && *got) objects.push_back(*got);
  } else if (what == 2) {
    PutProperty(object, member, args.empty() ? Variant() : args.front());
  } else {
    CallMethod(object, member, args);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // PrintIt goes to the system printer: let it write ops files into a private directory.
  static const std::string dir = [] {
    std::string d = (std::filesystem::temp_directory_path() / "quorvel-fuzz-XXXXXX").string();
    if (!mkdtemp(d.data())) std::abort();
    return d;
  }();
  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/printed.jsonl"));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  std::vector<ObjectRef> objects{SystemPrinterRef()};
  for (int step = 0; step < kMaxSteps && in.remaining_bytes() > 0; ++step) {
    try {
      Step(in, objects);
    } catch (const AutomationError&) {
      // A clear automation error is a correct answer to a wrong call.
    }
  }
  SystemPrinter().KillDoc();  // a routine that leaves its document open must not leak into the next input
  return 0;
}
