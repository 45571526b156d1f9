// Printing to a print queue: clear errors without a scheduler, and real jobs through a private CUPS
// scheduler whose default queue is a cups-pdf printer, read back with pdfinfo and pdftotext.
#include <cups/cups.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <regex>
#include <thread>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "invoices/invoice.hpp"
#include "invoices/invoice_printer.hpp"
#include "print_queue/cups_job.hpp"
#include "receipts/receipt_printer.hpp"
#include "robustness/robustness_helpers.hpp"
#include "statements/statement_printer.hpp"
#include "support/documents_helpers.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/print_queue_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;
namespace fs = std::filesystem;

const std::string kServerScript = QUORVEL_SOURCE_DIR "/tests/print_queue/cups_server.sh";
const std::string kCommand = QUORVEL_BINARY_DIR "/cli/quorvel";

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A voucher built by names only and printed with PrintIt on the system printer; the status.
int32_t PrintVoucherByNames(const std::string& number) {
  CObject voucher = Create("Quorvel.ClassVoucher");
  Put(voucher, "Number", CText(number.c_str()));
  Put(voucher, "PayeeName", CText("Corvantis Paper Mills Ltd."));
  CObject printer = Create("Quorvel.ClassVoucherPrinter");
  std::vector<quorvel_variant> args{CObj(voucher), CBool(true), CBool(false)};
  return quorvel_call(printer.get(), "PrintIt", args.data(), 3, nullptr);
}

// The id in "job QUEUE-ID"; -1 when the result is not a job of that queue.
int JobId(const std::string& result, const std::string& queue = "QuorvelPDF") {
  std::smatch match;
  return std::regex_match(result, match, std::regex("job " + queue + "-([0-9]+)")) ? std::stoi(match[1]) : -1;
}

class PrinterOutputRestored : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo company;
    company.SetCompanyInfo("Marlow & Tench Hardware", "22 Cooperage Row", "", "", "Wexbury", "Norland", "", "", "",
                           "", "kr", "Krone");
  }
  void TearDown() override {
    SystemPrinter().SetOutput(PrinterOutput{});
    SystemPrinter().SetPaper(Paper::A4());
  }
  ScopedEnv env_;
};

TEST_F(PrinterOutputRestored, WithoutASchedulerPrintingFailsClearlyAndLeavesNothing) {
  const std::string dir = TempDir("queue-none");
  fs::create_directories(dir + "/jobs");
  env_.Set("CUPS_SERVER", dir + "/no-scheduler.sock");
  env_.Set("TMPDIR", dir + "/jobs");
  OnFreshThread([] {
    ASSERT_EQ(quorvel_printer_set_queue(nullptr, "a4"), QUORVEL_OK);
    EXPECT_EQ(PrintVoucherByNames("PV-1"), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(LastError(), "Printer error")) << LastError();
    EXPECT_TRUE(Contains(LastError(), "no-scheduler.sock cannot be reached")) << LastError();
  });
  EXPECT_FALSE(SystemPrinter().InDocument());
  EXPECT_TRUE(fs::is_empty(dir + "/jobs"));
  const ShellResult cli = Shell(kCommand + " print " QUORVEL_SOURCE_DIR "/demo/samples/voucher.json --printer");
  EXPECT_EQ(cli.status, 2);
  EXPECT_TRUE(Contains(cli.output, "error 482: Printer error")) << cli.output;
}

// A private scheduler for each test, stopped at its end.
class RealScheduler : public PrinterOutputRestored {
 protected:
  void SetUp() override {
    PrinterOutputRestored::SetUp();
    dir_ = TempDir("cups");
    const ShellResult started = Shell("bash '" + kServerScript + "' start '" + dir_ + "'");
    if (started.status == 77) GTEST_SKIP() << started.output;
    ASSERT_EQ(started.status, 0) << started.output;
    running_ = true;
    socket_ = dir_ + "/cups.sock";
    fs::create_directories(dir_ + "/jobs");
    env_.Set("CUPS_SERVER", socket_);
    env_.Set("CUPS_SERVERROOT", dir_ + "/client");
    env_.Set("TMPDIR", dir_ + "/jobs");  // where the device renders: must be empty after every job
    since_ = std::time(nullptr);
  }
  void TearDown() override {
    StopScheduler();
    for (const std::string& pdf : arrived_) fs::remove(pdf);
    PrinterOutputRestored::TearDown();
  }
  void StopScheduler() {
    if (running_) Shell("bash '" + kServerScript + "' stop '" + dir_ + "'");
    running_ = false;
  }
  std::string Admin(const std::string& command) {
    const ShellResult result = Shell(command);
    EXPECT_EQ(result.status, 0) << command << ": " << result.output;
    return result.output;
  }
  // The PDF cups-pdf wrote for `job`, as pdftotext reads it.
  std::string ArrivedText(int job, int expected_pages) {
    std::string why;
    const std::string pdf = WaitForCupsPdf(socket_, job, since_, 60, why);
    EXPECT_FALSE(pdf.empty()) << why << "\n" << Shell("tail -n 30 '" + dir_ + "/log/error_log'").output;
    if (pdf.empty()) return "";
    arrived_.push_back(pdf);
    EXPECT_EQ(RunCommand("pdfinfo '" + pdf + "' | sed -n 's/^Pages: *//p'"), std::to_string(expected_pages) + "\n");
    return RunCommand("pdftotext -layout '" + pdf + "' -");
  }
  // Waits until a document has started rendering for the queue (its folder appears in TMPDIR),
  // then makes the queue refuse jobs, as if an operator stopped it mid-document.
  void RejectOnceStarted() {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (fs::is_empty(dir_ + "/jobs") && std::chrono::steady_clock::now() < give_up)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    Admin("cupsreject QuorvelPDF");
  }
  bool NothingQueued() {
    for (const JobInfo& job : Jobs(socket_))
      if (job.state < IPP_JSTATE_CANCELED) return false;
    return true;
  }

  std::string dir_, socket_;
  bool running_ = false;
  std::time_t since_ = 0;
  std::vector<std::string> arrived_;
};

void PrintInvoiceWithCpp(int& job, int& pages) {
  PrinterOutput queue;
  queue.device = "queue";  // the default destination
  SystemPrinter().SetOutput(queue);
  ClassInvoice invoice;
  invoice.printTitle = "Invoice";
  invoice.InvoiceNumber = "INV-58231";
  for (const char* name : {"Galvanised deck screws", "Marine varnish", "Bronze cleat"})
    invoice.AddItem(MakeItem("", name, "100.00"));
  invoice.Total = "300.00";
  ClassInvoicePrinter().PrintIt(invoice, true);
  ASSERT_EQ(SystemPrinter().LastResults().size(), 1u);
  job = JobId(SystemPrinter().LastResults()[0]);
  pages = SystemPrinter().LastPageCount();
}

TEST_F(RealScheduler, PrintItSendsEachDocumentAsOneJob) {
  int invoice_job = -1, invoice_pages = 0;
  OnFreshThread([&] { PrintInvoiceWithCpp(invoice_job, invoice_pages); });
  ASSERT_GT(invoice_job, 0);
  const std::string invoice = ArrivedText(invoice_job, invoice_pages);
  for (const char* text : {"Marlow & Tench Hardware", "INV-58231", "Galvanised deck screws", "300.00"})
    EXPECT_TRUE(Contains(invoice, text)) << text;
  EXPECT_TRUE(fs::is_empty(dir_ + "/jobs"));

  // Through the C interface, to the queue by name, on letter paper.
  int voucher_job = -1;
  OnFreshThread([&] {
    ASSERT_EQ(quorvel_printer_set_queue("QuorvelPDF", "letter"), QUORVEL_OK) << LastError();
    ASSERT_EQ(PrintVoucherByNames("PV-2024-0317"), QUORVEL_OK) << LastError();
    voucher_job = JobId(LastResults().at(0));
  });
  EXPECT_EQ(voucher_job, invoice_job + 1);
  EXPECT_TRUE(Contains(ArrivedText(voucher_job, 1), "PV-2024-0317"));
  const std::string pdf = arrived_.back();
  EXPECT_TRUE(Contains(RunCommand("pdfinfo '" + pdf + "'"), "612 x 792 pts (letter)"));

  // The command, to the default destination: a statement of several pages as one job.
  const ShellResult cli = Shell(kCommand + " print " QUORVEL_SOURCE_DIR "/demo/samples/statement.json --printer");
  ASSERT_EQ(cli.status, 0) << cli.output;
  std::smatch report;
  ASSERT_TRUE(std::regex_match(cli.output, report, std::regex("wrote (job QuorvelPDF-[0-9]+)\n([0-9]+) pages\n")))
      << cli.output;
  EXPECT_TRUE(Contains(ArrivedText(JobId(report[1]), std::stoi(report[2])), "31/03/2024"));
  EXPECT_TRUE(NothingQueued());
}

TEST_F(RealScheduler, RefusedAndFailedJobsLeaveNothingQueued) {
  // A queue that does not exist is AReceiptToAMissingQueue's case.
  const size_t jobs_before = Jobs(socket_).size();
  Admin("cupsreject QuorvelPDF");
  const std::string rendered = dir_ + "/rendered.pdf";
  OnFreshThread([&] {
    ASSERT_EQ(quorvel_printer_set_queue(nullptr, "a4"), QUORVEL_OK);
    EXPECT_EQ(PrintVoucherByNames("PV-4"), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(LastError(), "\"QuorvelPDF\" is not accepting jobs")) << LastError();
    // The scheduler's own refusal, when the queue stops accepting after the document started.
    ASSERT_EQ(quorvel_printer_set_output(rendered.c_str(), "a4"), QUORVEL_OK);
    ASSERT_EQ(PrintVoucherByNames("PV-5"), QUORVEL_OK);
    try {
      print_queue::SubmitPdf("QuorvelPDF", rendered, "refused");
      ADD_FAILURE() << "a rejecting queue took the job";
    } catch (const AutomationError& e) {
      EXPECT_EQ(e.Number(), print_queue::kPrinterError);
      EXPECT_TRUE(Contains(e.Context(), "refused the job")) << e.Context();
    }
  });
  EXPECT_EQ(Jobs(socket_).size(), jobs_before);
  Admin("cupsaccept QuorvelPDF");

  // A document that cannot be sent after its job was created: the job is cancelled.
  OnFreshThread([&] {
    try {
      print_queue::SubmitPdf("QuorvelPDF", dir_ + "/missing.pdf", "unreadable");
      ADD_FAILURE() << "a missing document was sent";
    } catch (const AutomationError& e) {
      EXPECT_TRUE(Contains(e.Context(), "was cancelled")) << e.Context();
    }
  });
  const std::vector<JobInfo> jobs = Jobs(socket_);
  ASSERT_EQ(jobs.size(), jobs_before + 1);
  EXPECT_EQ(jobs.back().state, IPP_JSTATE_CANCELED);
  EXPECT_TRUE(NothingQueued());
  EXPECT_TRUE(fs::is_empty(dir_ + "/jobs"));
}

// A scheduler that cannot be reached is WithoutASchedulerPrintingFailsClearlyAndLeavesNothing's case.
TEST_F(RealScheduler, NoDefaultQueueIsAClearError) {
  Admin("lpadmin -x QuorvelPDF");
  OnFreshThread([] {
    ASSERT_EQ(quorvel_printer_set_queue(nullptr, "a4"), QUORVEL_OK);
    EXPECT_EQ(PrintVoucherByNames("PV-6"), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(LastError(), "there is no default print queue")) << LastError();
  });
  EXPECT_FALSE(SystemPrinter().InDocument());
  EXPECT_TRUE(fs::is_empty(dir_ + "/jobs"));
}

TEST_F(RealScheduler, AReceiptToAMissingQueueFailsThroughPrintItTheCInterfaceAndTheCommand) {
  PrinterOutput office;
  office.device = "queue";
  office.queue = "Office";
  OnFreshThread([&] {
    SystemPrinter().SetOutput(office);
    ClassInvoice receipt;
    receipt.Store = "Corner Tea House";
    receipt.AddItem(MakeItem("Green tea", "Green tea 250 g", "4.50"));
    std::string context;
    EXPECT_EQ(ErrorNumberOf([&] { ReceiptPrinter().PrintIt(receipt); }, &context), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(context, "no print queue named \"Office\"")) << context;
    EXPECT_FALSE(SystemPrinter().Delivered());

    ASSERT_EQ(quorvel_printer_set_queue("Office", nullptr), QUORVEL_OK);
    CObject slip = Create("Quorvel.ClassInvoice");
    Put(slip, "Store", CText("Corner Tea House"));
    CObject printer = Create("Quorvel.ReceiptPrinter");
    std::vector<quorvel_variant> args{CObj(slip)};
    EXPECT_EQ(quorvel_call(printer.get(), "PrintIt", args.data(), 1, nullptr), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(LastError(), "no print queue named \"Office\"")) << LastError();
    EXPECT_TRUE(LastResults().empty());
  });
  const ShellResult cli = Shell(kCommand + " print " QUORVEL_SOURCE_DIR "/demo/samples/receipt.json --printer Office");
  EXPECT_EQ(cli.status, 2);
  EXPECT_TRUE(Contains(cli.output, "error 482")) << cli.output;
  EXPECT_FALSE(Contains(cli.output, "pages")) << cli.output;
  EXPECT_TRUE(NothingQueued());
}

TEST_F(RealScheduler, AQueueThatStopsAcceptingMidDocumentFailsThroughPrintItTheCInterfaceAndTheCommand) {
  const std::string refused = "print queue \"QuorvelPDF\" refused the job";
  OnFreshThread([&] {
    PrinterOutput queue;
    queue.device = "queue";  // the default destination
    SystemPrinter().SetOutput(queue);
    const auto statement = SampleStatement(20000, 0);
    std::string context;
    std::thread rejecter([&] { RejectOnceStarted(); });
    EXPECT_EQ(ErrorNumberOf([&] { ClassStatementPrinter().PrintIt(*statement, true); }, &context),
              print_queue::kPrinterError);
    rejecter.join();
    EXPECT_TRUE(Contains(context, refused)) << context;
    EXPECT_TRUE(SystemPrinter().LastResults().empty());
  });
  Admin("cupsaccept QuorvelPDF");

  // The C interface: a cheque list leaves its document open for the host to end.
  OnFreshThread([&] {
    ASSERT_EQ(quorvel_printer_set_queue(nullptr, nullptr), QUORVEL_OK);
    CObject statement = Create("Quorvel.ClassStatement");
    CObject printer = Create("Quorvel.ClassCheckPrinter");
    quorvel_object* handle = nullptr;
    ASSERT_EQ(quorvel_system_printer(&handle), QUORVEL_OK);
    CObject surface(handle);
    Call(printer, "PrintChecks", {CObj(surface), CObj(statement), CBool(true), CBool(true), CInt(1)});
    Admin("cupsreject QuorvelPDF");
    EXPECT_EQ(quorvel_printer_end_doc(), print_queue::kPrinterError);
    EXPECT_TRUE(Contains(LastError(), refused)) << LastError();
    EXPECT_TRUE(LastResults().empty());
  });
  Admin("cupsaccept QuorvelPDF");

  const std::string document = StatementWithLines(dir_, 20000);
  std::thread rejecter([&] { RejectOnceStarted(); });
  const ShellResult cli = Shell(kCommand + " print '" + document + "' --printer");
  rejecter.join();
  EXPECT_EQ(cli.status, 2);
  EXPECT_TRUE(Contains(cli.output, "error 482")) << cli.output;
  EXPECT_TRUE(Contains(cli.output, refused)) << cli.output;
  EXPECT_TRUE(NothingQueued());
}

}  // namespace
}  // namespace quorvel
