// The print-queue device: a document's pages rendered to one PDF and submitted to CUPS as one job.
#include <memory>

#include "foundation/errors.hpp"
#include "output/device.hpp"
#include "foundation/temp_folder.hpp"
#include "print_queue/cups_job.hpp"

namespace quorvel {

namespace print_queue {
namespace {

// The queue is looked up when the document starts, so a missing queue or a stopped scheduler
// fails before the pages are drawn; the job is created only once the whole PDF is rendered, so
// the scheduler never sees a document that failed half-way.
class QueueDevice : public WholePageDevice {
 public:
  explicit QueueDevice(const PrinterOutput& output) : queue_(FindQueue(output.queue)) {
    PrinterOutput pdf;
    // cups-pdf's re-distilled copy of the direct writer's CID fonts loses the text; the queue
    // is fed cairo's PDF, which every filter reads back whole.
    pdf.device = "pdf-cairo";
    pdf.path = folder_.Path() + "/document.pdf";
    pdf.pdf_creation_date = output.pdf_creation_date;
    pdf_ = OpenDevice(pdf);
  }

 protected:
  void TakePage(const DrawOps& ops, const PageInfo& page) override {
    pdf_->Page(ops, page.width, page.height);
    const std::string media = MediaName(page.width, page.height);
    media_ = pages_++ == 0 || media == media_ ? media : "";  // pages of different sizes: no one paper
  }

  void EndDocument() override {
    pdf_->Finish();
    const int job = SubmitPdf(queue_, pdf_->Results().front(), "Quorvel document", media_);
    results_.push_back("job " + queue_ + "-" + std::to_string(job));
  }

 private:
  std::string queue_;
  TempFolder folder_{"the print job"};
  std::unique_ptr<PageDevice> pdf_;  // declared after its folder, so its temporary file goes first
  std::string media_;
  int pages_ = 0;
};

}  // namespace
}  // namespace print_queue

void RegisterQueueDevice() {
  // The queue is found when the device opens, before any page is drawn: no check beforehand.
  DeviceEntry entry;
  entry.name = "queue";
  entry.open = [](const PrinterOutput& output) { return std::make_unique<print_queue::QueueDevice>(output); };
  RegisterDevice(std::move(entry));
}

}  // namespace quorvel
