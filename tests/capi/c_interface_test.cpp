// The C interface: objects by name, values both ways, by-reference write-back, errors, release.
#include <gtest/gtest.h>

#include <thread>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/text_fitting.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class CInterface : public ::testing::Test {
 protected:
  void SetUp() override { ModuleCompanyInfo::Profile() = CompanyProfile{}; }
};

TEST_F(CInterface, CreatesByNameAndConvertsValuesBothWays) {
  CObject invoice = Create("Quorvel.ClassInvoice");
  ASSERT_TRUE(invoice);
  quorvel_variant title = Get(invoice, "LPONumberTitle");
  EXPECT_EQ(title.owned, 1);  // a text the library allocated for the host
  EXPECT_EQ(TakeText(title), " PO No.");
  Put(invoice, "invoicenumber", CText("INV-7 Åsgård"));  // any case; UTF-8 kept as it is
  EXPECT_EQ(TakeText(Get(invoice, "InvoiceNumber")), "INV-7 Åsgård");

  quorvel_variant flag = Get(invoice, "hasBilling");
  EXPECT_EQ(flag.type, QUORVEL_BOOLEAN);
  EXPECT_EQ(flag.value.boolean, 0);
  Put(invoice, "hasBilling", CBool(true));
  EXPECT_EQ(Get(invoice, "hasBilling").value.boolean, 1);

  // Numbers given for texts become texts, as an automation host converts them.
  Put(invoice, "Total", CLong(1500));
  EXPECT_EQ(TakeText(Get(invoice, "Total")), "1500");
  Put(invoice, "subTotal", CDouble(12.5));
  EXPECT_EQ(TakeText(Get(invoice, "subTotal")), "12.5");
  EXPECT_TRUE(Create("classinvoiceitem"));  // without the prefix, any case
}

TEST_F(CInterface, LinesAreTheHostsObjectsAndOutliveItsHandles) {
  CObject invoice = Create("Quorvel.ClassInvoice");
  CObject item = Create("Quorvel.ClassInvoiceItem");
  Call(invoice, "AddItem", {CObj(item)});
  Call(invoice, "AddItem", {CObj(item)});
  CObject items = TakeObject(Get(invoice, "InvoiceItems"));
  EXPECT_EQ(TakeNumber(Get(items, "Count")), 2);
  CObject second = TakeObject(Call(items, "Item", {CLong(2)}));
  int32_t same = 0;
  ASSERT_EQ(quorvel_same_object(item.get(), second.get(), &same), QUORVEL_OK);
  EXPECT_EQ(same, 1);
  CObject items_again = TakeObject(Get(invoice, "InvoiceItems"));
  ASSERT_EQ(quorvel_same_object(items.get(), items_again.get(), &same), QUORVEL_OK);
  EXPECT_EQ(same, 1);  // the live list, not a copy
  ASSERT_EQ(quorvel_same_object(item.get(), invoice.get(), &same), QUORVEL_OK);
  EXPECT_EQ(same, 0);

  Put(item, "ItemName", CText("changed later"));
  EXPECT_EQ(TakeText(Get(second, "ItemName")), "changed later");
  // The host lets go of every handle to the line: the invoice still holds it and prints it.
  item = CObject();
  second = CObject();
  items = CObject();
  CObject preview = Create("Quorvel.PreviewSurface");
  CObject printer = Create("Quorvel.ClassInvoicePrinter");
  Call(printer, "PrintInvoice", {CObj(preview), CObj(invoice), CBool(false)});
  const std::string ops = TempDir("c-lines") + "/ops.jsonl";
  Call(preview, "WriteOps", {CText(ops.c_str())});
  EXPECT_TRUE(Contains(ReadFile(ops), "\"changed later\""));
}

TEST_F(CInterface, ByReferenceArgumentsAreWrittenBackWhenChanged) {
  CObject printer = Create("Quorvel.ClassVoucherPrinter");
  CObject preview = Create("Quorvel.PreviewSurface");
  const char* own = "Settlement of the February and March paper supply bills";
  std::vector<quorvel_variant> args{CObj(preview), CText(own), CLong(1400)};
  const std::string result = TakeText(Call(printer, "AdjustedText", args));
  // The expected cut comes from the shared fitting routine on a surface in the same font.
  PreviewSurface reference;
  std::string text = own;
  int16_t length = 1400;
  const std::string expected = AdjustedText(reference, text, length);
  ASSERT_NE(expected, own);
  EXPECT_EQ(result, expected);
  ASSERT_EQ(args[1].type, QUORVEL_TEXT);
  EXPECT_EQ(args[1].owned, 1);
  EXPECT_EQ(std::string(args[1].value.text), expected);
  EXPECT_EQ(args[2].type, QUORVEL_LONG);  // unchanged: still the caller's own value
  EXPECT_EQ(args[2].value.long_value, 1400);
  EXPECT_EQ(args[0].value.object, preview.get());  // a surface is never replaced
  EXPECT_EQ(args[0].owned, 0);

  // The written-back text passed again and cut shorter: the old copy is given back first.
  args[2] = CInt(700);
  const std::string shorter = TakeText(Call(printer, "AdjustedText", args));
  EXPECT_EQ(std::string(args[1].value.text), shorter);
  EXPECT_LT(shorter.size(), result.size());
  quorvel_variant_clear(&args[1]);

  // A text that fits comes back as it was, and the caller's variant is left alone.
  std::vector<quorvel_variant> fits{CObj(preview), CText("Bank"), CInt(1400)};
  EXPECT_EQ(TakeText(Call(printer, "AdjustedText", fits)), "Bank");
  EXPECT_EQ(fits[1].owned, 0);
  EXPECT_STREQ(fits[1].value.text, "Bank");

  // AddPayment hands back the object it appended: the same one, so the caller's handle stays.
  CObject voucher = Create("Quorvel.ClassVoucher");
  CObject payment = Create("Quorvel.ClassPayment");
  std::vector<quorvel_variant> pay{CObj(payment)};
  Call(voucher, "AddPayment", pay);
  EXPECT_EQ(pay[0].value.object, payment.get());
  EXPECT_EQ(pay[0].owned, 0);
  EXPECT_EQ(TakeNumber(Call(voucher, "Count", {})), 1);
}

// The status and the thread's last error of one failing call.
struct Failure {
  int32_t status;
  int32_t number;
  std::string message;
};

template <class CallC>
Failure Fails(CallC&& call) {
  Failure f{call(), 0, ""};
  const char* message = nullptr;
  quorvel_last_error(&f.number, &message);
  f.message = message ? message : "";
  return f;
}

TEST_F(CInterface, MissingMembersWrongTypesAndOverflowsReportTheirErrors) {
  CObject invoice = Create("Quorvel.ClassInvoice");
  quorvel_variant out{};
  Failure f = Fails([&] { return quorvel_get(invoice.get(), "NoSuchField", &out); });
  EXPECT_EQ(f.status, 438);
  EXPECT_EQ(f.number, 438);
  EXPECT_TRUE(Contains(f.message, "Object doesn't support this property or method")) << f.message;
  EXPECT_TRUE(Contains(f.message, "NoSuchField")) << f.message;
  EXPECT_EQ(out.type, QUORVEL_EMPTY);  // nothing is written on failure
  quorvel_variant text = CText("x");
  EXPECT_EQ(quorvel_put(invoice.get(), "NoSuchField", &text), 438);
  EXPECT_EQ(quorvel_call(invoice.get(), "PrintIt", nullptr, 0, nullptr), 438);

  std::vector<quorvel_variant> not_item{CText("not an item")};
  f = Fails([&] { return quorvel_call(invoice.get(), "AddItem", not_item.data(), 1, nullptr); });
  EXPECT_EQ(f.status, 13);
  EXPECT_TRUE(Contains(f.message, "Type mismatch")) << f.message;
  EXPECT_TRUE(Contains(f.message, "ClassInvoice.AddItem")) << f.message;
  CObject payment = Create("Quorvel.ClassPayment");
  std::vector<quorvel_variant> wrong_line{CObj(payment)};
  f = Fails([&] { return quorvel_call(invoice.get(), "AddItem", wrong_line.data(), 1, nullptr); });
  EXPECT_EQ(f.status, 13);
  EXPECT_TRUE(Contains(f.message, "ClassPayment given where ClassInvoiceItem is expected")) << f.message;
  quorvel_variant object = CObj(payment);
  EXPECT_EQ(quorvel_put(invoice.get(), "Total", &object), 13);

  CObject printer = Create("Quorvel.ClassVoucherPrinter");
  CObject preview = Create("Quorvel.PreviewSurface");
  std::vector<quorvel_variant> too_long{CObj(preview), CText("Bank"), CLong(40000)};
  f = Fails([&] { return quorvel_call(printer.get(), "AdjustedText", too_long.data(), 3, nullptr); });
  EXPECT_EQ(f.status, 6);
  EXPECT_TRUE(Contains(f.message, "Overflow")) << f.message;
  CObject voucher = Create("Quorvel.ClassVoucher");
  std::vector<quorvel_variant> index{CDouble(70000)};
  EXPECT_EQ(quorvel_call(voucher.get(), "Remove", index.data(), 1, nullptr), 6);

  Put(invoice, "Total", CText("1.00"));  // a success clears the thread's last error
  EXPECT_EQ(LastError(), "0: ");
}

TEST_F(CInterface, BadHandlesNamesAndArgumentsAreRefused) {
  quorvel_object* none = nullptr;
  Failure f = Fails([&] { return quorvel_create("Quorvel.ClassBrochure", &none); });
  EXPECT_EQ(f.status, 429);
  EXPECT_TRUE(Contains(f.message, "ClassBrochure")) << f.message;
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(quorvel_create("Quorvel.Printer", &none), 429);  // lent by the library, never created
  EXPECT_EQ(quorvel_get(nullptr, "Total", nullptr), 91);
  CObject invoice = Create("Quorvel.ClassInvoice");
  EXPECT_EQ(quorvel_get(invoice.get(), nullptr, nullptr), 5);
  EXPECT_EQ(quorvel_put(invoice.get(), "Total", nullptr), 5);
  EXPECT_EQ(quorvel_call(invoice.get(), "AddItem", nullptr, 1, nullptr), 5);
  EXPECT_EQ(quorvel_call(invoice.get(), "AddItem", nullptr, 0, nullptr), 449);  // argument not optional
  quorvel_variant odd{};
  odd.type = 42;
  f = Fails([&] { return quorvel_put(invoice.get(), "Total", &odd); });
  EXPECT_EQ(f.status, 5);
  EXPECT_TRUE(Contains(f.message, "variant type 42")) << f.message;
  int32_t same = 0;
  EXPECT_EQ(quorvel_same_object(invoice.get(), nullptr, &same), 91);
}

TEST_F(CInterface, EachThreadSeesItsOwnLastError) {
  CObject invoice = Create("Quorvel.ClassInvoice");
  std::vector<quorvel_variant> not_item{CText("x")};
  ASSERT_EQ(quorvel_call(invoice.get(), "AddItem", not_item.data(), 1, nullptr), 13);
  int32_t other_thread = 0;
  std::thread([&] {
    quorvel_get(invoice.get(), "NoSuchField", nullptr);
    other_thread = LastErrorNumber();
  }).join();
  EXPECT_EQ(other_thread, 438);
  EXPECT_EQ(LastErrorNumber(), 13);
}

TEST_F(CInterface, ReleaseAndClearGiveBackOnlyWhatTheLibraryAllocated) {
  EXPECT_EQ(quorvel_variant_clear(nullptr), QUORVEL_OK);
  EXPECT_EQ(quorvel_text_free(nullptr), QUORVEL_OK);
  // The caller's own text is only forgotten: freeing a literal would crash here.
  quorvel_variant own = CText("a literal");
  EXPECT_EQ(quorvel_variant_clear(&own), QUORVEL_OK);
  EXPECT_EQ(own.type, QUORVEL_EMPTY);
  EXPECT_EQ(own.value.text, nullptr);
  // An owned object result is released by clearing it; the object lives on in its document.
  CObject invoice = Create("Quorvel.ClassInvoice");
  quorvel_variant items = Get(invoice, "InvoiceItems");
  ASSERT_EQ(items.type, QUORVEL_OBJECT);
  EXPECT_EQ(items.owned, 1);
  EXPECT_EQ(quorvel_variant_clear(&items), QUORVEL_OK);
  EXPECT_EQ(items.type, QUORVEL_EMPTY);
  CObject again = TakeObject(Get(invoice, "InvoiceItems"));
  EXPECT_EQ(TakeNumber(Get(again, "Count")), 0);
}

}  // namespace
}  // namespace quorvel
