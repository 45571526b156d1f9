// The whole Quorvel library in the order hosts see it: each subsystem declares its classes.
#include "automation/declarations.hpp"

namespace quorvel {

void DeclareAllClasses(TypeLibrary& library) {
  DeclareCompanyClasses(library);
  DeclareVoucherClasses(library);
  DeclareInvoiceClasses(library);
  DeclareDeliveryNoteClasses(library);
  DeclareReceiptClasses(library);
  DeclareStatementClasses(library);
  DeclareSurfaceClasses(library);
}

}  // namespace quorvel
