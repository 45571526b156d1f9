// One declaring function per subsystem; each lists its classes' members in interface order.
#pragma once

#include "automation/type_library.hpp"

namespace quorvel {

void DeclareCompanyClasses(TypeLibrary& library);     // ClassCompanyInfo
void DeclareVoucherClasses(TypeLibrary& library);     // ClassPayment, ClassVoucher, ClassVoucherPrinter
void DeclareInvoiceClasses(TypeLibrary& library);     // ClassInvoiceItem, ClassInvoice, ClassInvoicePrinter
void DeclareDeliveryNoteClasses(TypeLibrary& library);  // ClassDeliveryNote, ClassDeliveryNotePrinter
void DeclareReceiptClasses(TypeLibrary& library);       // ReceiptPrinter
void DeclareStatementClasses(TypeLibrary& library);   // statements and cheque lists
void DeclareSurfaceClasses(TypeLibrary& library);     // Printer, PreviewSurface: surfaces hosts pass to print routines

}  // namespace quorvel
