// Batch test helpers.
#include "support/batch_helpers.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <filesystem>
#include <fstream>

#include "support/ops_helpers.hpp"

extern char** environ;

namespace quorvel::testing {

using nlohmann::json;

const char* const kCompanyA = "Quillmoor Trading Co.";
const char* const kCompanyB = "Harbourline Stationers";

namespace {
json Company(const std::string& name) {
  return {{"CompanyName", name}, {"Address1", "1 Test Row"}, {"City", "Dunmerrow"}, {"DefaultCurrencySign", "$"}};
}

json InvoiceItem(int i) {
  return {{"ItemName", "ITEM-" + std::to_string(i)}, {"Description", "Boxed paper"}, {"Quantity", "2"},
          {"Unit", "Box"}, {"UnitPrice", "5.00"}, {"Total", "10.00"}};
}

json Body(const std::string& type, const std::string& marker) {
  if (type == "voucher")
    return {{"Amount", "10.00"}, {"Number", marker}, {"ReceiptDate", "14/03/2024"}, {"PayeeName", "Corvantis"},
            {"PaymentMethod", "CASH"},
            {"Payments", json::array({{{"Number", "BL-1"}, {"OriginalAmount", "10.00"}, {"Payments", "10.00"}}})}};
  if (type == "invoice" || type == "receipt")
    return {{"printTitle", marker}, {"InvoiceNumber", "INV-" + marker}, {"InvoiceDate", "14/03/2024"},
            {"subTotal", "10.00"}, {"Total", "10.00"}, {"InvoiceItems", json::array({InvoiceItem(1)})}};
  if (type == "delivery_note")
    return {{"printTitle", marker}, {"NoteNumber", "DN-" + marker}, {"NoteDate", "15/03/2024"},
            {"items", json::array({{{"ItemName", "BOLT-M8"}, {"Quantity", "12"}, {"Unit", "Carton"}}})}};
  return {{"printTitle", marker}, {"StatementNumber", "ST-" + marker}, {"totalBalance", "120.00"},
          {"PrintPDCChecks", false},
          {"StatementItems", json::array({{{"TransactionDate", "01/01/2024"}, {"Description", "Invoice INV-2400"},
                                           {"Debit", "120.00"}, {"balance", "120.00"}}})}};
}
}  // namespace

json SmallDocument(const std::string& type, const std::string& marker, const std::string& company) {
  json document = {{"type", type}, {"document", Body(type, marker)}};
  if (!company.empty()) document["company"] = Company(company);
  return document;
}

json LongInvoice(const std::string& marker, int lines) {
  json document = SmallDocument("invoice", marker, kCompanyA);
  json& items = document["document"]["InvoiceItems"];
  for (int i = 2; i <= lines; ++i) items.push_back(InvoiceItem(i));
  return document;
}

std::vector<std::string> Dump(const std::vector<json>& documents) {
  std::vector<std::string> lines;
  for (const json& document : documents) lines.push_back(document.dump());
  return lines;
}

std::string WriteJsonLines(const std::string& path, const std::vector<std::string>& lines) {
  std::ofstream out(path, std::ios::binary);
  for (const std::string& line : lines) out << line << "\n";
  return path;
}

int QpdfPages(const std::string& path) {
  try {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.processFile(path.c_str());
    if (pdf.anyWarnings()) return -1;
    return static_cast<int>(QPDFPageDocumentHelper(pdf).getAllPages().size());
  } catch (const std::exception&) {
    return -1;
  }
}

std::string PageText(const std::string& path, int page) {
  const std::string n = std::to_string(page);
  return RunCommand("pdftotext -f " + n + " -l " + n + " '" + path + "' -");
}

pid_t StartQuorvel(const std::vector<std::string>& args, const std::string& log) {
  const std::string program = std::string(QUORVEL_BINARY_DIR) + "/cli/quorvel";
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  pid_t pid = -1;
  if (posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) != 0) pid = -1;
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

int WaitExit(pid_t pid) {
  int status = 0;
  if (waitpid(pid, &status, 0) != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<std::string> Temporaries(const std::string& dir) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
    const std::string name = entry.path().filename().string();
    if (name.find(".tmp-") != std::string::npos || name.rfind(".quorvel-tmp-", 0) == 0 ||
        name.rfind(".quorvel-batch-", 0) == 0)
      found.push_back(entry.path().string());
  }
  return found;
}

}  // namespace quorvel::testing
