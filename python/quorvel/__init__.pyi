"""Type hints for quorvel, generated from the type library by quorvel.generated_stub()."""
from typing import Any, Iterator, Optional

__version__: str

class Error(RuntimeError):
    number: int
    message: str
    description: str
    context: str

class Object:
    class_name: str
    def __getattr__(self, name: str) -> Any: ...
    def __setattr__(self, name: str, value: Any) -> None: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __len__(self) -> int: ...

def set_output(path: str, paper: Optional[str] = None) -> None: ...
def set_queue(queue: str = "", paper: Optional[str] = None) -> None: ...
def set_pdfa(on: bool = True) -> None: ...
def attach(path: str, mime_type: Optional[str] = None, relationship: Optional[str] = None, description: Optional[str] = None) -> None: ...
def clear_attachments() -> None: ...
def end_doc() -> None: ...
def kill_doc() -> None: ...
def last_results() -> tuple[list[str], int]: ...
def system_printer() -> Object: ...
def preview(width: float = 11906.0, height: float = 16838.0) -> Object: ...
def preview_ops(surface: Object) -> list[dict]: ...
def print_document(document: dict, output: str, paper: str = "a4", preview: bool = False) -> list[str]: ...
def printing() -> Any: ...
def generated_stub() -> str: ...

class ClassCompanyInfo(Object):
    def SetCompanyInfo(self, CompanyName: str, Address1: str, Address2: str, Address3: str, City: str, Country: str, phone: str, Email: str, Fax: str, Website: str, DefaultCurrencySign: str, DefaultCurrencyName: str) -> None: ...
    def SetTopMargin(self, margin: int) -> None: ...
    def SetLogo(self, path: str) -> None: ...

class ClassVoucher(Object):
    Amount: str
    SumofAmount: str
    Number: str
    ReceiptDate: str
    PayeeName: str
    ChequeNumber: str
    Bank: str
    ChequeDate: str
    PaymentMethod: str
    Notes: str
    def AddPayment(self, payment: ClassPayment) -> None: ...
    def Count(self) -> int: ...
    def payment(self, index: int) -> ClassPayment: ...
    def Remove(self, index: int) -> None: ...
    def Clear(self) -> None: ...
    Payments: Collection
    def AddItem(self, payment: ClassPayment) -> None: ...

class ClassPayment(Object):
    Number: str
    InvoiceDate: str
    OriginalAmount: str
    AmountDue: str
    Credits: str
    Payments: str

class ClassVoucherPrinter(Object):
    PrintDetails: bool
    Title: str
    def PrintIt(self, voucherData: ClassVoucher, printHeader: bool, isReceipt: bool) -> None: ...
    def PrintReceiptVoucher(self, obj: Object, receiptData: ClassVoucher, printHeader: bool, isReceipt: bool) -> None: ...
    def PrintPaymentDetailsHeader(self, obj: Object, isReceipt: bool) -> None: ...
    def PrintPaymentDetails(self, obj: Object, Payments: Collection, isReceipt: bool) -> None: ...
    def PrintPaymentDetailsInfo(self, obj: Object, payment: ClassPayment) -> None: ...
    def printTable(self, obj: Object, top: Any) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...

class ClassInvoice(Object):
    printType: str
    printTitle: str
    BillToTitle: str
    CustomerShortName: str
    Change: str
    Received: str
    NumberTitle: str
    CustomerSign: str
    CashierSign: str
    TotalOtherExpenses: str
    PrintFooter: bool
    LPONumberTitle: str
    Store: str
    PaymentMethod: str
    LPONumber: str
    SumOfTotal: str
    Shipping1: str
    Shipping2: str
    Shipping3: str
    Shipping4: str
    Shipping5: str
    Billing1: str
    Billing2: str
    Billing3: str
    Billing4: str
    Billing5: str
    hasShipping: bool
    hasBilling: bool
    InvoiceDate: str
    currencySign: str
    InvoiceNumber: str
    EmployeeName: str
    HasDiscount: bool
    DiscountPercent: str
    DiscountTitle: str
    InvoiceDiscount: str
    CustomerNote1: str
    CustomerNote2: str
    CustomerNote3: str
    OtherExpenses: Collection
    subTotal: str
    Total: str
    def AddItem(self, item: ClassInvoiceItem) -> None: ...
    def AddExpense(self, item: ClassInvoiceItem) -> None: ...
    InvoiceItems: Collection
    QRCode: str
    def SetZatcaQR(self, SellerName: str, VATNumber: str, Timestamp: str, TotalWithVAT: str, VATTotal: str) -> None: ...

class ClassInvoiceItem(Object):
    ItemName: str
    Quantity: str
    UnitPrice: str
    Total: str
    Description: str
    Unit: str
    PKG: str

class ClassInvoicePrinter(Object):
    printItemsTable: bool
    printLPONumber: bool
    PreviewCollection: Collection
    def PrintSalesReceipt(self) -> None: ...
    def PrintInvoiceHeader(self, obj: Object, invoice: ClassInvoice, printHeader: bool) -> None: ...
    def PrintInvoice(self, obj: Object, invoice: ClassInvoice, printHeader: bool) -> None: ...
    def PrintItemsHeader(self, obj: Object) -> None: ...
    def printTable(self, obj: Object, top: float, hasBilling: bool, hasShipping: bool, hasLPO: bool) -> None: ...
    def PrintIt(self, invoice: ClassInvoice, printHeader: bool) -> None: ...
    def PrintItem(self, obj: Object, It: ClassInvoiceItem) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...

class ClassDeliveryNote(Object):
    items: Collection
    NoteNumber: str
    NoteDate: str
    InvoiceNumber: str
    PackageNumber: str
    Billing1: str
    Billing2: str
    Billing3: str
    Billing4: str
    Billing5: str
    PrintFooter: bool
    hasBilling: bool
    CustomerNote1: str
    CustomerNote2: str
    CustomerNote3: str
    NumberTitle: str
    printTitle: str
    Employee: str
    def AddItem(self, item: ClassInvoiceItem) -> None: ...

class ClassDeliveryNotePrinter(Object):
    printItemsTable: bool
    def PrintDelNoteHeader(self, obj: Object, delNote: ClassDeliveryNote, printHeader: bool) -> None: ...
    def PrintDeliveryNote(self, obj: Object, delNote: ClassDeliveryNote, printHeader: bool) -> None: ...
    def PrintItemsHeader(self, obj: Object) -> None: ...
    def printTable(self, obj: Object, top: float) -> None: ...
    def PrintItem(self, obj: Object, It: ClassInvoiceItem, serialNumber: int) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...
    def AdjustedText2(self, obj: Object, text: str, length: int) -> Any: ...
    def PrintIt(self, delNote: ClassDeliveryNote, printHeader: bool) -> None: ...

class ReceiptPrinter(Object):
    POS_Right_Margin: str
    POS_Left_Margin: str
    def PrintIt(self, receipt: ClassInvoice) -> None: ...
    def PrintReceipt(self, obj: Object, receipt: ClassInvoice) -> None: ...
    def SetCustomerMessage1(self, message: str) -> None: ...
    def SetCustomerMessage2(self, message: str) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...

class ClassStatement(Object):
    printType: str
    printTitle: str
    BillToTitle: str
    CustomerShortName: str
    Change: str
    Received: str
    NumberTitle: str
    totalDebit: str
    totalCredit: str
    totalBalance: str
    showByMonth: bool
    currentDue: str
    thirtyDaysDue: str
    sixtyDaysDue: str
    nintyDaysDue: str
    overNintyDaysDue: str
    CustomerSign: str
    CashierSign: str
    PrintFooter: bool
    Store: str
    PaymentMethod: str
    LPONumber: str
    SumOfTotal: str
    Shipping1: str
    Shipping2: str
    Shipping3: str
    Shipping4: str
    Shipping5: str
    Billing1: str
    Billing2: str
    Billing3: str
    Billing4: str
    Billing5: str
    hasShipping: bool
    hasBilling: bool
    month1Title: str
    month1Value: str
    month2Title: str
    month2Value: str
    month3Title: str
    month3Value: str
    month4Title: str
    month4Value: str
    month5Title: str
    month5Value: str
    month6Title: str
    month6Value: str
    month7Title: str
    month7Value: str
    month8Title: str
    month8Value: str
    StatementDate: str
    currencySign: str
    StatementNumber: str
    EmployeeName: str
    HasDiscount: bool
    DiscountPercent: str
    StatementDiscount: str
    CustomerNote1: str
    CustomerNote2: str
    CustomerNote3: str
    subTotal: str
    Total: str
    PrintPDCChecks: bool
    PDCTotal: str
    def AddItem(self, item: ClassStatementItem) -> None: ...
    StatementItems: Collection
    PDCChecks: Collection
    def AddChecks(self, check: ClassCheck) -> None: ...

class ClassStatementItem(Object):
    Description: str
    TransactionDate: str
    Debit: str
    Credit: str
    balance: str

class ClassCheck(Object):
    TransactionNum: str
    TransactionDate: str
    Bank: str
    ChqDate: str
    ChqNum: str
    Amount: str

class ClassStatementPrinter(Object):
    printItemsTable: bool
    printLPONumber: bool
    PreviewCollection: Collection
    def PrintSalesReceipt(self) -> None: ...
    def PrintStatementHeader(self, obj: Object, statement: ClassStatement, printHeader: bool) -> None: ...
    def PrintStatement(self, obj: Object, statement: ClassStatement, printHeader: bool) -> None: ...
    def PrintStandardAging(self, obj: Object, curY: Any, statement: ClassStatement) -> None: ...
    def PrintByMonthAging(self, obj: Object, curY: Any, statement: ClassStatement) -> None: ...
    def PrintItemsHeader(self, obj: Object) -> None: ...
    def printTable(self, obj: Object, top: Any, hasBilling: bool, hasShipping: bool, hasLPO: bool, showByMonth: bool) -> None: ...
    def PrintIt(self, statement: ClassStatement, printHeader: bool) -> None: ...
    def PrintPDCChecks(self, obj: Object) -> None: ...
    def PrintChecksHeader(self, obj: Object) -> None: ...
    def PrintItem(self, obj: Object, It: ClassStatementItem) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...

class ClassCheckPrinter(Object):
    printItemsTable: bool
    PreviewCollection: Collection
    def PrintChecks(self, obj: Object, statement: ClassStatement, printHeader: bool, printTable: bool, pageNumber: int) -> None: ...
    def printHeader(self, obj: Object, printHeader: bool) -> None: ...
    def PrintItemsHeader(self, obj: Object) -> None: ...
    def PrintItem(self, obj: Object, It: ClassCheck) -> None: ...
    def printTable(self, obj: Object, top: Any, hasBilling: bool, hasShipping: bool, hasLPO: bool) -> None: ...
    def AdjustedText(self, obj: Object, text: str, length: int) -> Any: ...

class PreviewSurface(Object):
    Width: float
    Height: float
    TextWarnings: str
    def WritePng(self, path: str) -> None: ...
    def WriteSvg(self, path: str) -> None: ...
    def WriteOps(self, path: str) -> None: ...
