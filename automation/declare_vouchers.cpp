// Interfaces of the voucher classes.
#include "automation/class_builder.hpp"
#include "automation/declarations.hpp"
#include "vouchers/voucher.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {

void DeclareVoucherClasses(TypeLibrary& library) {
  using V = ClassVoucher;
  using Pay = ClassPayment;
  ClassBuilder<V>(library, "ClassVoucher")
      .Field("Amount", &V::Amount)
      .Field("SumofAmount", &V::SumofAmount)
      .Field("Number", &V::Number)
      .Field("ReceiptDate", &V::ReceiptDate)
      .Field("PayeeName", &V::PayeeName)
      .Field("ChequeNumber", &V::ChequeNumber)
      .Field("Bank", &V::Bank)
      .Field("ChequeDate", &V::ChequeDate)
      .Field("PaymentMethod", &V::PaymentMethod)
      .Field("Notes", &V::Notes)
      .Method("AddPayment", &V::AddPayment, {"payment"})
      .Method("Count", &V::Count, {})
      .Method("payment", &V::payment, {"index"})
      .Method("Remove", &V::Remove, {"index"})
      .Method("Clear", &V::Clear, {})
      .Get<CollectionRef<ClassPayment>>("Payments", [](V& v) { return v.Payments(); })
      .Method("AddItem", &V::AddItem, {"payment"});

  ClassBuilder<Pay>(library, "ClassPayment")
      .Field("Number", &Pay::Number)
      .Field("InvoiceDate", &Pay::InvoiceDate)
      .Field("OriginalAmount", &Pay::OriginalAmount)
      .Field("AmountDue", &Pay::AmountDue)
      .Field("Credits", &Pay::Credits)
      .Field("Payments", &Pay::Payments);
  DeclareCollection<Pay>(library);

  using P = ClassVoucherPrinter;
  ClassBuilder<P>(library, "ClassVoucherPrinter")
      .Field("PrintDetails", &P::PrintDetails)
      .Field("Title", &P::Title)
      .Method("PrintIt", &P::PrintIt, {"voucherData", "printHeader", "isReceipt"})
      .Method("PrintReceiptVoucher", &P::PrintReceiptVoucher, {"obj", "receiptData", "printHeader", "isReceipt"})
      .Method("PrintPaymentDetailsHeader", &P::PrintPaymentDetailsHeader, {"obj", "isReceipt"})
      .Method("PrintPaymentDetails", &P::PrintPaymentDetails, {"obj", "Payments", "isReceipt"})
      .Method("PrintPaymentDetailsInfo", &P::PrintPaymentDetailsInfo, {"obj", "payment"})
      .Method("printTable", &P::printTable, {"obj", "top As Variant"})
      .Method("AdjustedText", &P::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant);
}

}  // namespace quorvel
