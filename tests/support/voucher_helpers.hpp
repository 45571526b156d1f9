// Shared set-up for the voucher tests: a known company profile, sample vouchers, text measures.
#pragma once

#include <cmath>
#include <memory>
#include <string>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "vouchers/voucher.hpp"

namespace quorvel::testing {

// A fresh profile with "$" / "Dollar" and BottomReserve 5500.
inline void ResetVoucherProfile() {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  ClassCompanyInfo info;
  info.SetCompanyInfo("Brackwell Tool Supply", "Dock Lane 7", "", "", "Tarrow", "Esland", "+44 100 2000", "", "",
                      "", "$", "Dollar");
}

inline std::shared_ptr<ClassPayment> MakePayment(const std::string& number, const std::string& date,
                                                 const std::string& original, const std::string& due,
                                                 const std::string& credits, const std::string& paid) {
  auto p = std::make_shared<ClassPayment>();
  p->Number = number;
  p->InvoiceDate = date;
  p->OriginalAmount = original;
  p->AmountDue = due;
  p->Credits = credits;
  p->Payments = paid;
  return p;
}

// A cheque payment of two bills.
inline void FillChequeVoucher(ClassVoucher& v) {
  v.Amount = "12,450.75";
  v.SumofAmount = "Twelve Thousand Four Hundred Fifty and Seventy Five Cents Only";
  v.Number = "PV-0317";
  v.ReceiptDate = "14/03/2024";
  v.PayeeName = "Corvantis Paper Mills";
  v.ChequeNumber = "004518";
  v.Bank = "Fernhollow Savings Bank";
  v.ChequeDate = "30/03/2024";
  v.PaymentMethod = "CHEQUE";
  v.Notes = "Paper supply, February";
  v.AddItem(MakePayment("B-1001", "02/02/2024", "5,200.00", "5,200.00", "0.00", "5,200.00"));
  v.AddItem(MakePayment("B-1002", "19/02/2024", "7,400.75", "7,400.75", "150.00", "7,250.75"));
}

// Width of `text` at `points`, as any surface measures it.
inline double Measure(const std::string& text, double points = 10, bool bold = false) {
  PreviewSurface s;
  s.Font().Size(points);
  s.Font().Bold(bold);
  return s.TextWidth(text);
}

// The 16-bit conversion's rounding: to the nearest, halves to the even neighbour.
inline double HalfEven(double x) { return std::nearbyint(x); }

}  // namespace quorvel::testing
