// Late binding through the type library: creation by name, properties, methods, errors, JSON loading.
#include <gtest/gtest.h>

#include "automation/document_job.hpp"
#include "automation/type_library.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "invoices/invoice.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::ErrorNumberOf;

TEST(LateBinding, CreatesByNameAndReachesMembersInAnyCase) {
  ObjectRef invoice = CreateObject("Quorvel.ClassInvoice");
  ASSERT_TRUE(invoice);
  EXPECT_EQ(invoice.cls->interface_name, "_ClassInvoice");
  EXPECT_EQ(GetProperty(invoice, "lponumbertitle").AsString(), " PO No.");
  PutProperty(invoice, "INVOICENUMBER", Variant("INV-7"));
  EXPECT_EQ(static_cast<ClassInvoice*>(invoice.ptr.get())->InvoiceNumber, "INV-7");
  PutProperty(invoice, "hasBilling", Variant(true));
  EXPECT_TRUE(GetProperty(invoice, "HasBilling").AsBool());
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("Quorvel.NoSuchClass"); }), 429);
  EXPECT_TRUE(CreateObject("classinvoiceitem"));
}

TEST(LateBinding, LinesAreSharedByReference) {
  ObjectRef invoice = CreateObject("Quorvel.ClassInvoice");
  ObjectRef item = CreateObject("Quorvel.ClassInvoiceItem");
  std::vector<Variant> args{Variant(item)};
  CallMethod(invoice, "AddItem", args);
  CallMethod(invoice, "AddItem", args);
  ObjectRef items = GetProperty(invoice, "InvoiceItems").AsObject();
  EXPECT_EQ(GetProperty(items, "Count").AsInt32(), 2);
  PutProperty(item, "ItemName", Variant("changed later"));
  std::vector<Variant> index{Variant(int32_t{2})};
  ObjectRef second = CallMethod(items, "Item", index).AsObject();
  EXPECT_EQ(second, item);
  EXPECT_EQ(GetProperty(second, "ItemName").AsString(), "changed later");
  std::vector<Variant> bad{Variant(int32_t{3})};
  EXPECT_EQ(ErrorNumberOf([&] { CallMethod(items, "Item", bad); }), 9);
}

TEST(LateBinding, ErrorsNameTheMemberAndTheValue) {
  ObjectRef invoice = CreateObject("Quorvel.ClassInvoice");
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { GetProperty(invoice, "NoSuchField"); }, &context), 438);
  EXPECT_NE(context.find("NoSuchField"), std::string::npos);
  // A text where an invoice item is expected, and an item where a text is expected.
  std::vector<Variant> text{Variant("not an item")};
  EXPECT_EQ(ErrorNumberOf([&] { CallMethod(invoice, "AddItem", text); }, &context), 13);
  EXPECT_NE(context.find("ClassInvoice.AddItem"), std::string::npos);
  EXPECT_EQ(ErrorNumberOf([&] { PutProperty(invoice, "Total", Variant(invoice)); }), 13);
  EXPECT_EQ(ErrorNumberOf([&] { PutProperty(invoice, "Total", Variant("bad \xFF")); }), 5);
  std::vector<Variant> none;
  EXPECT_EQ(ErrorNumberOf([&] { CallMethod(invoice, "AddItem", none); }), 449);
  // Past 16 bits and non-numeric texts as integers.
  EXPECT_EQ(ErrorNumberOf([] { Variant(40000.0).AsInt16(); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { Variant("12x").AsInt16(); }), 13);
  EXPECT_EQ(Variant(" 12 ").AsInt16(), 12);
  EXPECT_EQ(Variant(true).AsInt16(), -1);
}

TEST(LateBinding, CompanyProfileThroughItsClass) {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  ObjectRef info = CreateObject("Quorvel.ClassCompanyInfo");
  EXPECT_EQ(ModuleCompanyInfo::Profile().BottomReserve, 5500);
  std::vector<Variant> margin{Variant(int16_t{1000})};
  CallMethod(info, "SetTopMargin", margin);
  EXPECT_EQ(ModuleCompanyInfo::Profile().BottomReserve, 4500);
}

TEST(DocumentJobLoading, NamesUnknownFieldsAndWrongTypes) {
  std::string context;
  auto load = [](const char* text) { LoadDocumentJob(nlohmann::json::parse(text)); };
  EXPECT_EQ(ErrorNumberOf([&] { load(R"({"type":"letterhead","company":{"Nmae":"x"}})"); }, &context), 438);
  EXPECT_NE(context.find("company.Nmae"), std::string::npos);
  EXPECT_EQ(ErrorNumberOf([&] { load(R"({"type":"brochure"})"); }, &context), 5);
  EXPECT_NE(context.find("brochure"), std::string::npos);
  EXPECT_EQ(ErrorNumberOf([&] { load(R"({"type":"letterhead","printHeader":"yes"})"); }, &context), 13);
  EXPECT_EQ(ErrorNumberOf([&] { load(R"({"type":"letterhead","colour":1})"); }, &context), 438);
  EXPECT_EQ(ErrorNumberOf([&] { load(R"({"type":"letterhead","company":{"CompanyName":7}})"); }, &context), 13);
  EXPECT_NE(context.find("company.CompanyName"), std::string::npos);
}

TEST(DocumentJobLoading, LetterheadJobPrintsTheProfile) {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  const DocumentJob job = LoadDocumentJob(nlohmann::json::parse(
      R"({"type":"letterhead","company":{"CompanyName":"Quay Stores","City":"Elm","TopMargin":300}})"));
  EXPECT_EQ(ModuleCompanyInfo::Profile().TopMargin, 300);
  PreviewSurface preview;
  PrintJobOnSurface(job, preview);
  ASSERT_FALSE(preview.Ops().empty());
  EXPECT_EQ(std::get<TextOp>(preview.Ops()[0]).text, "Quay Stores");
}

}  // namespace
}  // namespace quorvel
