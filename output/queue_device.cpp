// The print-queue device: a document's pages rendered to one PDF and submitted to CUPS as one job.
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <vector>

#include "foundation/errors.hpp"
#include "output/cups_job.hpp"
#include "output/device.hpp"

namespace quorvel::print_queue {

namespace {

// A private folder for the rendered job, removed with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quorvel-job-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (!mkdtemp(buffer.data())) Raise(err::kFileError, "cannot make a folder for the print job in " + pattern);
    path_ = buffer.data();
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// The queue is looked up when the document starts, so a missing queue or a stopped scheduler
// fails before the pages are drawn; the job is created only once the whole PDF is rendered, so
// the scheduler never sees a document that failed half-way.
class QueueDevice : public PageDevice {
 public:
  explicit QueueDevice(const PrinterOutput& output) : queue_(FindQueue(output.queue)) {
    PrinterOutput pdf;
    // cups-pdf's re-distilled copy of the direct writer's CID fonts loses the text; until that is
    // understood the queue is fed cairo's PDF, which it reads back whole.
    pdf.device = "pdf-cairo";
    pdf.path = folder_.Path() + "/document.pdf";
    pdf.pdf_creation_date = output.pdf_creation_date;
    pdf_ = OpenDevice(pdf);
  }

 protected:
  // The pages pass whole to the PDF device; this device only notes their paper.
  void BeginPage(const PageInfo& page) override {
    const std::string media = MediaName(page.width, page.height);
    media_ = pages_++ == 0 || media == media_ ? media : "";  // pages of different sizes: no one paper
    ops_.clear();
    width_ = page.width;
    height_ = page.height;
  }
  void Draw(const TextOp& op) override { ops_.push_back(op); }
  void Draw(const LineOp& op) override { ops_.push_back(op); }
  void Draw(const BoxOp& op) override { ops_.push_back(op); }
  void EndPage() override { pdf_->Page(ops_, width_, height_); }

  void EndDocument() override {
    pdf_->Finish();
    const int job = SubmitPdf(queue_, pdf_->Results().front(), "Quorvel document", media_);
    results_.push_back("job " + queue_ + "-" + std::to_string(job));
  }

 private:
  std::string queue_;
  TempFolder folder_;
  std::unique_ptr<PageDevice> pdf_;  // declared after its folder, so its temporary file goes first
  std::string media_;
  int pages_ = 0;
  DrawOps ops_;
  double width_ = 0, height_ = 0;
};

}  // namespace

}  // namespace quorvel::print_queue

namespace quorvel {

void RegisterQueueDevice() {
  RegisterDevice({"queue", {}, false, false, [](const PrinterOutput& output) {
                    return std::make_unique<print_queue::QueueDevice>(output);
                  }});
}

}  // namespace quorvel
