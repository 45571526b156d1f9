// PDF joining with the qpdf library.
#include "batch/pdf_merge.hpp"

#include <qpdf/ClosedFileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

#include <memory>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"

namespace quorvel::batch {

long MergePdfs(const std::vector<std::string>& parts, const std::string& path) {
  AtomicFile file(path);
  QPDF merged;
  merged.emptyPDF();
  QPDFPageDocumentHelper pages(merged);
  // Every part stays open until the write; a closed-file source reopens a part only while it is
  // read, so a batch of thousands never runs out of file descriptors.
  std::vector<std::unique_ptr<QPDF>> sources;
  long count = 0;
  for (const std::string& part : parts) {
    try {
      auto source = std::make_unique<QPDF>();
      auto input = std::make_shared<ClosedFileInputSource>(part.c_str());
      input->stayOpen(false);
      source->processInputSource(input);
      for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(*source).getAllPages()) {
        pages.addPage(page, false);
        ++count;
      }
      sources.push_back(std::move(source));
    } catch (const std::exception& e) {
      Raise(err::kFileError, "cannot join " + part + " into " + path + ": " + e.what());
    }
  }
  try {
    // Written into memory, then through the checked writer: every byte of the file is checked.
    QPDFWriter writer(merged);
    writer.setOutputMemory();
    writer.setStaticID(false);
    writer.write();
    std::shared_ptr<Buffer> bytes(writer.getBuffer());
    file.Write(bytes->getBuffer(), bytes->getSize());
  } catch (const AutomationError&) {
    throw;
  } catch (const std::exception& e) {
    Raise(err::kFileError, "cannot write " + path + ": " + e.what());
  }
  file.Commit();
  return count;
}

}  // namespace quorvel::batch
