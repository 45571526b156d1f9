// Invoice test helpers.
#include "support/invoices_helpers.hpp"

#include <cmath>
#include <sstream>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"

namespace quorvel::testing {

void ResetCompany() {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  ClassCompanyInfo info;
  info.SetCompanyInfo("Larkspur Office Supply", "7 Tannery Row", "", "", "Millbrook", "", "", "", "",
                      "", "$", "Dollar");
}

std::shared_ptr<ClassInvoiceItem> MakeItem(const std::string& name, const std::string& description,
                                           const std::string& total) {
  auto item = std::make_shared<ClassInvoiceItem>();
  item->ItemName = name;
  item->Description = description;
  item->Quantity = "1";
  item->UnitPrice = total;
  item->Total = total;
  return item;
}

ClassInvoice SampleInvoice() {
  ClassInvoice invoice;
  invoice.printTitle = "Invoice";
  invoice.NumberTitle = "Invoice No.";
  invoice.InvoiceNumber = "INV-7";
  invoice.InvoiceDate = "01/02/2024";
  invoice.LPONumber = "PO-88";
  invoice.hasBilling = invoice.hasShipping = true;
  invoice.Billing1 = "Fenwick Garden Centre";
  invoice.Billing2 = "22 Orchard Way";
  invoice.Shipping1 = "Fenwick Depot";
  invoice.subTotal = "30.00";
  invoice.Total = "30.00";
  invoice.SumOfTotal = "Thirty dollars only";
  invoice.CustomerNote1 = "Thank You For Your Shopping";
  return invoice;
}

double CaptionRowWithoutAddresses(bool with_po) {
  const int lines = 12 + 3 + 1 + (with_po ? 2 : 0) + 1;
  return std::nearbyint(lines * LineAt(10));
}

std::vector<DrawOps> PagesOf(const DrawOps& ops, const std::string& title) {
  std::vector<DrawOps> pages;
  for (const DrawOp& op : ops) {
    const auto* text = std::get_if<TextOp>(&op);
    if (text && text->size == 24 && text->text == title) pages.emplace_back();
    if (!pages.empty()) pages.back().push_back(op);
  }
  return pages;
}

}  // namespace quorvel::testing
