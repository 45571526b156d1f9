// The `quorvel typelib` listing against the published interfaces: every class in its place, each
// with its underscored dispatch interface and its members in the documented order.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/type_library.hpp"

namespace quorvel {
namespace {

struct ListedClass {
  std::string name;
  std::string interface_name;
  bool creatable = false;
  std::vector<std::string> members;  // a property's get and let lines count once
};

// Reads the listing back: "Class X (creatable as Quorvel.X)", "  Interface _X", "    kind  Name...".
std::vector<ListedClass> ParseListing(const std::string& listing) {
  std::vector<ListedClass> classes;
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("Class ", 0) == 0) {
      ListedClass cls;
      cls.name = line.substr(6, line.find(' ', 6) - 6);
      cls.creatable = line.find("(creatable as Quorvel." + cls.name + ")") != std::string::npos;
      classes.push_back(cls);
    } else if (line.rfind("  Interface ", 0) == 0 && !classes.empty()) {
      classes.back().interface_name = line.substr(12);
    } else if (line.rfind("    ", 0) == 0 && !classes.empty()) {
      const size_t start = line.find("  ", 4) + 2;  // after the kind words
      const std::string name = line.substr(start, line.find_first_of(" (", start) - start);
      std::vector<std::string>& members = classes.back().members;
      if (members.empty() || members.back() != name) members.push_back(name);
    }
  }
  return classes;
}

std::vector<std::string> Numbered(const std::string& stem, int from, int to, const std::string& tail = "") {
  std::vector<std::string> names;
  for (int i = from; i <= to; ++i) names.push_back(stem + std::to_string(i) + tail);
  return names;
}

std::vector<std::string> Join(std::initializer_list<std::vector<std::string>> parts) {
  std::vector<std::string> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// The classes of the library's published interfaces, in their published order.
const std::vector<std::string> kClasses = {
    "ClassCompanyInfo", "ClassVoucher", "ClassPayment", "ClassVoucherPrinter", "ClassInvoice",
    "ClassInvoiceItem", "ClassInvoicePrinter", "ClassDeliveryNote", "ClassDeliveryNotePrinter", "ReceiptPrinter",
    "ClassStatement", "ClassStatementItem", "ClassCheck", "ClassStatementPrinter", "ClassCheckPrinter"};

// Each class's members: data-model properties first, then the interface's members, each name
// where it is first listed.
std::vector<std::string> DocumentedMembers(const std::string& cls) {
  if (cls == "ClassCompanyInfo") return {"SetCompanyInfo", "SetTopMargin", "SetLogo"};  // the logo came later, at the end
  if (cls == "ClassVoucher")
    return {"Amount", "SumofAmount", "Number", "ReceiptDate", "PayeeName", "ChequeNumber", "Bank", "ChequeDate",
            "PaymentMethod", "Notes", "AddPayment", "Count", "payment", "Remove", "Clear", "Payments", "AddItem"};
  if (cls == "ClassPayment") return {"Number", "InvoiceDate", "OriginalAmount", "AmountDue", "Credits", "Payments"};
  if (cls == "ClassVoucherPrinter")
    return {"PrintDetails", "Title", "PrintIt", "PrintReceiptVoucher", "PrintPaymentDetailsHeader",
            "PrintPaymentDetails", "PrintPaymentDetailsInfo", "printTable", "AdjustedText"};
  if (cls == "ClassInvoice")
    return Join({{"printType", "printTitle", "BillToTitle", "CustomerShortName", "Change", "Received", "NumberTitle",
                  "CustomerSign", "CashierSign", "TotalOtherExpenses", "PrintFooter", "LPONumberTitle", "Store",
                  "PaymentMethod", "LPONumber", "SumOfTotal"},
                 Numbered("Shipping", 1, 5), Numbered("Billing", 1, 5),
                 {"hasShipping", "hasBilling", "InvoiceDate", "currencySign", "InvoiceNumber", "EmployeeName",
                  "HasDiscount", "DiscountPercent", "DiscountTitle", "InvoiceDiscount"},
                 Numbered("CustomerNote", 1, 3),
                 {"OtherExpenses", "subTotal", "Total", "AddItem", "AddExpense", "InvoiceItems",
                  "QRCode", "SetZatcaQR"}});  // the QR members came later, after all the others
  if (cls == "ClassInvoiceItem") return {"ItemName", "Quantity", "UnitPrice", "Total", "Description", "Unit", "PKG"};
  if (cls == "ClassInvoicePrinter")
    return {"printItemsTable", "printLPONumber", "PreviewCollection", "PrintSalesReceipt", "PrintInvoiceHeader",
            "PrintInvoice", "PrintItemsHeader", "printTable", "PrintIt", "PrintItem", "AdjustedText"};
  if (cls == "ClassDeliveryNote")
    return Join({{"items", "NoteNumber", "NoteDate", "InvoiceNumber", "PackageNumber"}, Numbered("Billing", 1, 5),
                 {"PrintFooter", "hasBilling"}, Numbered("CustomerNote", 1, 3),
                 {"NumberTitle", "printTitle", "Employee", "AddItem"}});
  if (cls == "ClassDeliveryNotePrinter")
    return {"printItemsTable", "PrintDelNoteHeader", "PrintDeliveryNote", "PrintItemsHeader", "printTable",
            "PrintItem", "AdjustedText", "AdjustedText2", "PrintIt"};
  if (cls == "ReceiptPrinter")
    return {"POS_Right_Margin", "POS_Left_Margin", "PrintIt", "PrintReceipt", "SetCustomerMessage1",
            "SetCustomerMessage2", "AdjustedText"};
  if (cls == "ClassStatement") {
    std::vector<std::string> months;
    for (int i = 1; i <= 8; ++i) months.insert(months.end(), {"month" + std::to_string(i) + "Title",
                                                               "month" + std::to_string(i) + "Value"});
    return Join({{"printType", "printTitle", "BillToTitle", "CustomerShortName", "Change", "Received", "NumberTitle",
                  "totalDebit", "totalCredit", "totalBalance", "showByMonth", "currentDue", "thirtyDaysDue",
                  "sixtyDaysDue", "nintyDaysDue", "overNintyDaysDue", "CustomerSign", "CashierSign", "PrintFooter",
                  "Store", "PaymentMethod", "LPONumber", "SumOfTotal"},
                 Numbered("Shipping", 1, 5), Numbered("Billing", 1, 5), {"hasShipping", "hasBilling"}, months,
                 {"StatementDate", "currencySign", "StatementNumber", "EmployeeName", "HasDiscount",
                  "DiscountPercent", "StatementDiscount"},
                 Numbered("CustomerNote", 1, 3),
                 {"subTotal", "Total", "PrintPDCChecks", "PDCTotal", "AddItem", "StatementItems", "PDCChecks",
                  "AddChecks"}});
  }
  if (cls == "ClassStatementItem") return {"Description", "TransactionDate", "Debit", "Credit", "balance"};
  if (cls == "ClassCheck") return {"TransactionNum", "TransactionDate", "Bank", "ChqDate", "ChqNum", "Amount"};
  if (cls == "ClassStatementPrinter")
    return {"printItemsTable", "printLPONumber", "PreviewCollection", "PrintSalesReceipt", "PrintStatementHeader",
            "PrintStatement", "PrintStandardAging", "PrintByMonthAging", "PrintItemsHeader", "printTable", "PrintIt",
            "PrintPDCChecks", "PrintChecksHeader", "PrintItem", "AdjustedText"};
  if (cls == "ClassCheckPrinter")
    return {"printItemsTable", "PreviewCollection", "PrintChecks", "printHeader", "PrintItemsHeader", "PrintItem",
            "printTable", "AdjustedText"};
  return {};
}

// "position 5: listed PrintPaymentDetails, documented PrintPaymentDetailsHeader", or "".
std::string FirstDifference(const std::vector<std::string>& listed, const std::vector<std::string>& documented) {
  for (size_t i = 0; i < std::max(listed.size(), documented.size()); ++i) {
    const std::string a = i < listed.size() ? listed[i] : "(nothing)";
    const std::string b = i < documented.size() ? documented[i] : "(nothing)";
    if (a != b) return "position " + std::to_string(i + 1) + ": listed " + a + ", documented " + b;
  }
  return "";
}

TEST(TypeLibraryListing, ClassesInterfacesAndMembersStandInThePublishedOrder) {
  std::vector<std::string> published, surfaces;
  for (const ListedClass& cls : ParseListing(DescribeLibrary())) {
    EXPECT_EQ(cls.interface_name, "_" + cls.name);
    const std::vector<std::string> documented = DocumentedMembers(cls.name);
    if (documented.empty()) {  // the surfaces
      surfaces.push_back(cls.name);
      continue;
    }
    published.push_back(cls.name);
    EXPECT_TRUE(cls.creatable) << cls.name;
    EXPECT_EQ(FirstDifference(cls.members, documented), "") << cls.name;
  }
  EXPECT_EQ(published, kClasses);
  // Besides the documents, the library lends hosts the two surfaces they draw on.
  EXPECT_EQ(surfaces, (std::vector<std::string>{"Printer", "PreviewSurface"}));
}

}  // namespace
}  // namespace quorvel
