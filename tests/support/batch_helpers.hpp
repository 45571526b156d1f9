// Batch test helpers: small documents of every type, JSON Lines files of them, and PDF checks
// read back through the qpdf library.
#pragma once

#include <sys/types.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace quorvel::testing {

// The two companies the batch tests print under.
extern const char* const kCompanyA;
extern const char* const kCompanyB;

// A one-page document of `type` (voucher, invoice, delivery_note, receipt, statement): one line
// each, so it fits an A4 page with room to spare. Its title (or number, for a voucher) carries
// `marker`; `company` is kCompanyA, kCompanyB or empty for none.
nlohmann::json SmallDocument(const std::string& type, const std::string& marker, const std::string& company);
// The same invoice with `lines` item lines (enough of them run over several pages).
nlohmann::json LongInvoice(const std::string& marker, int lines);

// One document per line.
std::string WriteJsonLines(const std::string& path, const std::vector<std::string>& lines);
std::vector<std::string> Dump(const std::vector<nlohmann::json>& documents);

// Page count of a PDF read by qpdf with its structure checked; -1 when qpdf cannot read it.
int QpdfPages(const std::string& path);
// The text pdftotext finds on one page (1-based).
std::string PageText(const std::string& path, int page);

// Starts `quorvel ARGS...` with its output into `log`; returns the process id.
pid_t StartQuorvel(const std::vector<std::string>& args, const std::string& log);
// Waits for the process; its exit code, or 128 + the signal that ended it.
int WaitExit(pid_t pid);

// Files whose names say they are an unfinished write (".NAME.tmp-XXXXXX"), anywhere below `dir`.
std::vector<std::string> Temporaries(const std::string& dir);

}  // namespace quorvel::testing
