// The device registry: the built-in devices registered on first use, lookup by name or ending,
// and the page loop every device shares.
#include <algorithm>
#include <mutex>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"
#include "output/device.hpp"

namespace quorvel {

// Each built-in device's registration, defined in its own file. Listing them here (rather than
// static initialisers) keeps every device in programs linked against the static library.
void RegisterPdfDevice();
void RegisterCairoPdfDevice();
void RegisterPngDevice();
void RegisterSvgDevice();
void RegisterOpsDevice();
void RegisterQueueDevice();
void RegisterEscPosDevice();

namespace {

std::vector<DeviceEntry>& Entries() {
  static std::vector<DeviceEntry> entries;
  return entries;
}

std::mutex& RegistryMutex() {
  static std::mutex mutex;
  return mutex;
}

// True on the thread registering the built-in devices, whose RegisterDevice calls must not wait
// for the registration they are part of.
thread_local bool registering_built_ins = false;

void RegisterBuiltInDevices() {
  static std::once_flag once;
  if (registering_built_ins) return;
  std::call_once(once, [] {
    registering_built_ins = true;
    RegisterPdfDevice();  // first, so that it is the one for .pdf
    RegisterCairoPdfDevice();
    RegisterPngDevice();
    RegisterSvgDevice();
    RegisterOpsDevice();
    RegisterQueueDevice();
    RegisterEscPosDevice();
    registering_built_ins = false;
  });
}

const DeviceEntry& EntryNamed(const std::string& name) {
  for (const DeviceEntry& entry : RegisteredDevices())
    if (entry.name == name) return entry;
  std::string known;
  for (const DeviceEntry& entry : RegisteredDevices()) known += (known.empty() ? "" : ", ") + entry.name;
  Raise(err::kInvalidArgument, "output device \"" + name + "\" does not exist (known: " + known + ")");
}

}  // namespace

void RegisterDevice(DeviceEntry entry) {
  RegisterBuiltInDevices();
  std::lock_guard<std::mutex> lock(RegistryMutex());
  for (const DeviceEntry& known : Entries())
    if (known.name == entry.name) Raise(err::kInvalidArgument, "output device \"" + entry.name + "\" is registered twice");
  Entries().push_back(std::move(entry));
}

const std::vector<DeviceEntry>& RegisteredDevices() {
  RegisterBuiltInDevices();
  return Entries();
}

PrinterOutput PrinterOutput::ForPath(const std::string& path) {
  PrinterOutput output;
  output.path = path;
  output.device.clear();
  const std::string ending = LowercaseEnding(path);
  std::vector<std::string> endings;
  std::string special;
  for (const DeviceEntry& entry : RegisteredDevices())
    for (const std::string& known : entry.endings) {
      if (known == ending && output.device.empty()) output.device = entry.name;
      if (!entry.special_use.empty()) special += ", or " + known + " " + entry.special_use;
      else if (std::find(endings.begin(), endings.end(), known) == endings.end()) endings.push_back(known);
    }
  if (output.device.empty()) {
    std::string list;
    for (size_t i = 0; i < endings.size(); ++i)
      list += (i == 0 ? "" : i + 1 == endings.size() ? " or " : ", ") + endings[i];
    Raise(err::kInvalidArgument, "output " + path + ": the ending must be " + list + special);
  }
  return output;
}

std::unique_ptr<PageDevice> OpenDevice(const PrinterOutput& output) {
  CheckArchivalOutput(output);
  return EntryNamed(output.device).open(output);
}

void CheckOutputWritable(const PrinterOutput& output) {
  CheckArchivalOutput(output);
  const DeviceEntry& entry = EntryNamed(output.device);
  if (entry.check_writable) entry.check_writable(output);
}

void CheckArchivalOutput(const PrinterOutput& output) {
  if (!output.pdfa && output.attachments.empty()) return;
  const DeviceEntry& entry = EntryNamed(output.device);
  if (entry.archival) return;
  const std::string asked = output.pdfa ? (output.attachments.empty() ? "PDF/A" : "PDF/A and attachments") : "attachments";
  Raise(err::kInvalidArgument, asked + " need the direct PDF output (a .pdf file); the output device \"" + entry.name +
                                   "\" cannot write them");
}

DeviceEntry FileDevice(std::string name, std::vector<std::string> endings, DeviceFactory open) {
  DeviceEntry entry;
  entry.name = std::move(name);
  entry.endings = std::move(endings);
  entry.open = std::move(open);
  entry.check_writable = [](const PrinterOutput& output) { CheckWritable(output.path); };
  return entry;
}

void PageDevice::Page(const DrawOps& ops, double width, double height) {
  if (needs_ == Needs::WholeDocument) {
    kept_.push_back({ops, width, height});
    Plan(PageInfo{width, height});
  } else {
    Send(ops, width, height);
  }
}

void PageDevice::Finish() {
  for (const KeptPage& page : kept_) Send(page.ops, page.width, page.height);
  kept_.clear();
  EndDocument();
}

void PageDevice::Send(const DrawOps& ops, double width, double height) {
  BeginPage(PageInfo{width, height});
  for (const DrawOp& op : ops) std::visit([this](const auto& item) { Draw(item); }, op);
  EndPage();
}

}  // namespace quorvel
