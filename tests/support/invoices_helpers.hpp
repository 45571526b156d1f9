// Test helpers for invoices: sample documents, the layout rules restated, page splitting of a
// preview and the "no rule crosses a text" check.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "support/layout_checks.hpp"
#include "invoices/invoice.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {

// A4 in twips, and the page foot with the reserve a ClassCompanyInfo sets.
constexpr double kA4Width = 11906, kA4Height = 16838;
constexpr double kFoot = 16838 - 5500;

// A fresh process profile with BottomReserve 5500, TopMargin 0 and the currency name "Dollar".
void ResetCompany();

std::shared_ptr<ClassInvoiceItem> MakeItem(const std::string& name, const std::string& description,
                                           const std::string& total = "10.00");

// An invoice with a title, number, date, both address blocks, totals and footer notes.
ClassInvoice SampleInvoice();

// The y of the column captions when the head is printed without letterhead at TopMargin 0:
// twelve blank lines, the two-line number/date block and its blank line, the blank line after
// the (absent) addresses, the two purchase-order lines and the blank line after them, rounded.
double CaptionRowWithoutAddresses(bool with_po = true);

// Splits a preview's ops into pages: a page begins at each 24-point title.
std::vector<DrawOps> PagesOf(const DrawOps& ops, const std::string& title);


}  // namespace quorvel::testing
