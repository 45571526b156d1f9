// The ops device: the drawing as JSON Lines, a page op at each page break and an end op at the end.
#include "foundation/atomic_file.hpp"
#include "output/device.hpp"

namespace quorvel {

namespace {

class OpsDevice : public PageDevice {
 public:
  explicit OpsDevice(const PrinterOutput& output) : file_(output.path), end_op_(!output.single_picture) {}

 protected:
  void BeginPage(const PageInfo&) override {
    if (pages_++ > 0) Write(PageOp{});
  }
  void Draw(const TextOp& op) override { Write(op); }
  void Draw(const LineOp& op) override { Write(op); }
  void Draw(const BoxOp& op) override { Write(op); }
  void Draw(const QrOp& op) override { Write(op); }
  void Draw(const ImageOp& op) override { Write(op); }
  void EndDocument() override {
    if (end_op_) Write(EndOp{});  // a preview's picture is not a document and has no end
    file_.Commit();
    results_.push_back(file_.Path());
  }

 private:
  void Write(const DrawOp& op) {
    line_ = OpToJson(op);
    line_ += '\n';
    file_.Write(line_);
  }
  AtomicFile file_;
  bool end_op_;
  int pages_ = 0;
  std::string line_;
};

}  // namespace

void RegisterOpsDevice() {
  RegisterDevice(FileDevice("ops", {".jsonl"}, [](const PrinterOutput& output) {
    return std::make_unique<OpsDevice>(output);
  }));
}

}  // namespace quorvel
