#!/usr/bin/env python3
"""An example host: builds an invoice purely by class and member names through libquorvel.so
(ctypes only) and prints it to a PDF with ClassInvoicePrinter.PrintIt.

    python3 examples/invoice_host.py --library build/capi/libquorvel.so -o invoice.pdf
"""
import argparse
import ctypes
import os
import sys
import weakref

EMPTY, BOOLEAN, INTEGER, LONG, SINGLE, DOUBLE, TEXT, OBJECT = range(8)


class _Value(ctypes.Union):
    _fields_ = [("boolean", ctypes.c_int32), ("integer", ctypes.c_int16), ("long_value", ctypes.c_int32),
                ("single", ctypes.c_float), ("real", ctypes.c_double), ("text", ctypes.c_char_p),
                ("object", ctypes.c_void_p)]


class Variant(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int32), ("owned", ctypes.c_int32), ("value", _Value)]


class QuorvelError(Exception):
    def __init__(self, number, message):
        super().__init__(f"error {number}: {message}")
        self.number = number
        self.message = message


class Quorvel:
    """The library, loaded from a path; every call's status is checked and turned into QuorvelError."""

    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        handle_out = ctypes.POINTER(ctypes.c_void_p)
        signatures = {
            "quorvel_create": [ctypes.c_char_p, handle_out],
            "quorvel_get": [ctypes.c_void_p, ctypes.c_char_p, ctypes.POINTER(Variant)],
            "quorvel_put": [ctypes.c_void_p, ctypes.c_char_p, ctypes.POINTER(Variant)],
            "quorvel_call": [ctypes.c_void_p, ctypes.c_char_p, ctypes.POINTER(Variant), ctypes.c_int32,
                             ctypes.POINTER(Variant)],
            "quorvel_release": [ctypes.c_void_p],
            "quorvel_variant_clear": [ctypes.POINTER(Variant)],
            "quorvel_text_free": [ctypes.c_void_p],
            "quorvel_last_error": [ctypes.POINTER(ctypes.c_int32), ctypes.POINTER(ctypes.c_char_p)],
            "quorvel_printer_set_output": [ctypes.c_char_p, ctypes.c_char_p],
            "quorvel_printer_last_results": [ctypes.POINTER(ctypes.c_void_p), ctypes.POINTER(ctypes.c_int32)],
        }
        for name, argtypes in signatures.items():
            function = getattr(self.lib, name)
            function.argtypes = argtypes
            function.restype = ctypes.c_int32

    def check(self, status):
        if status != 0:
            number, message = ctypes.c_int32(), ctypes.c_char_p()
            self.lib.quorvel_last_error(ctypes.byref(number), ctypes.byref(message))
            raise QuorvelError(number.value, (message.value or b"").decode("utf-8"))

    def create(self, class_name):
        handle = ctypes.c_void_p()
        self.check(self.lib.quorvel_create(class_name.encode("utf-8"), ctypes.byref(handle)))
        return QuorvelObject(self, handle.value)

    def set_output(self, path, paper="a4"):
        self.check(self.lib.quorvel_printer_set_output(path.encode("utf-8"), paper.encode("utf-8")))

    def last_results(self):
        text, pages = ctypes.c_void_p(), ctypes.c_int32()
        self.check(self.lib.quorvel_printer_last_results(ctypes.byref(text), ctypes.byref(pages)))
        results = ctypes.string_at(text.value).decode("utf-8")
        self.lib.quorvel_text_free(text)
        return results.splitlines(), pages.value

    def to_variant(self, value, variant):
        if value is None:
            variant.type = EMPTY
        elif isinstance(value, bool):
            variant.type, variant.value.boolean = BOOLEAN, int(value)
        elif isinstance(value, int):
            variant.type, variant.value.long_value = LONG, value
        elif isinstance(value, float):
            variant.type, variant.value.real = DOUBLE, value
        elif isinstance(value, str):
            variant.type, variant.value.text = TEXT, value.encode("utf-8")
        elif isinstance(value, QuorvelObject):
            variant.type, variant.value.object = OBJECT, value.handle
        else:
            raise TypeError(f"no variant for {type(value).__name__}")

    def from_variant(self, variant):
        """The Python value of a variant the library filled; owned texts and objects are taken over."""
        kind = variant.type
        if kind == TEXT:
            value = variant.value.text.decode("utf-8")
        elif kind == OBJECT:
            value = QuorvelObject(self, variant.value.object) if variant.value.object else None
            variant.owned = 0  # the handle now belongs to the Python object
        else:
            value = {EMPTY: None, BOOLEAN: bool(variant.value.boolean), INTEGER: variant.value.integer,
                     LONG: variant.value.long_value, SINGLE: variant.value.single, DOUBLE: variant.value.real}[kind]
        self.lib.quorvel_variant_clear(ctypes.byref(variant))
        return value


class QuorvelObject:
    """One handle; released when the Python object goes away."""

    def __init__(self, quorvel, handle):
        self.quorvel = quorvel
        self.handle = handle
        weakref.finalize(self, quorvel.lib.quorvel_release, handle)

    def get(self, member):
        result = Variant()
        self.quorvel.check(self.quorvel.lib.quorvel_get(self.handle, member.encode("utf-8"), ctypes.byref(result)))
        return self.quorvel.from_variant(result)

    def put(self, member, value):
        variant = Variant()
        self.quorvel.to_variant(value, variant)
        self.quorvel.check(self.quorvel.lib.quorvel_put(self.handle, member.encode("utf-8"), ctypes.byref(variant)))

    def call(self, member, *args):
        variants = (Variant * max(len(args), 1))()
        for variant, value in zip(variants, args):
            self.quorvel.to_variant(value, variant)
        result = Variant()
        status = self.quorvel.lib.quorvel_call(self.handle, member.encode("utf-8"), variants, len(args),
                                               ctypes.byref(result))
        self.quorvel.check(status)
        for i in range(len(args)):  # by-reference write-backs, which this host does not use
            self.quorvel.lib.quorvel_variant_clear(ctypes.byref(variants[i]))
        return self.quorvel.from_variant(result)


COMPANY = ["Marlow & Tench Hardware", "22 Cooperage Row", "Dock Street", "", "Wexbury", "Norland",
           "+47 555 0142", "orders@marlowtench.example", "+47 555 0143", "www.marlowtench.example",
           "kr", "Krone"]
INVOICE = {
    "printTitle": "Invoice", "NumberTitle": "Invoice #", "InvoiceNumber": "INV-58231", "InvoiceDate": "12/06/2024",
    "hasBilling": True, "Billing1": "Ostvik Boatyard AS", "Billing2": "Attn: Sigrun Dahle",
    "Billing3": "7 Slipway Road", "Billing4": "Wexbury 4410", "LPONumber": "PO-7730",
    "subTotal": "1,520.00", "HasDiscount": True, "DiscountPercent": "5%", "InvoiceDiscount": "76.00",
    "TotalOtherExpenses": "185.00", "Total": "1,629.00", "SumOfTotal": "One thousand six hundred twenty-nine",
    "CustomerNote1": "Goods remain ours until paid in full.", "PrintFooter": True,
}
ITEMS = [("MT-1042", "Galvanised deck screws, box of 500", "4", "85.00", "340.00"),
         ("MT-2210", "Marine varnish, 2.5 litre tin", "6", "120.00", "720.00"),
         ("MT-3307", "Bronze cleat 150 mm", "10", "46.00", "460.00")]
EXPENSES = [("FRT", "Freight to Ostvik", "1", "150.00", "150.00"),
            ("PKG", "Pallet and wrapping", "1", "35.00", "35.00")]


def line(quorvel, fields):
    item = quorvel.create("Quorvel.ClassInvoiceItem")
    for name, value in zip(("ItemName", "Description", "Quantity", "UnitPrice", "Total"), fields):
        item.put(name, value)
    return item


def print_invoice(quorvel, output):
    company = quorvel.create("Quorvel.ClassCompanyInfo")
    company.call("SetCompanyInfo", *COMPANY)
    quorvel.set_output(output, "a4")
    invoice = quorvel.create("Quorvel.ClassInvoice")
    for name, value in INVOICE.items():
        invoice.put(name, value)
    for fields in ITEMS:
        invoice.call("AddItem", line(quorvel, fields))
    for fields in EXPENSES:
        invoice.call("AddExpense", line(quorvel, fields))
    printer = quorvel.create("Quorvel.ClassInvoicePrinter")
    printer.put("printItemsTable", True)
    printer.call("PrintIt", invoice, True)
    return quorvel.last_results()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--library", default=os.environ.get("QUORVEL_LIBRARY", "libquorvel.so"))
    parser.add_argument("-o", "--output", default="invoice.pdf")
    options = parser.parse_args()
    try:
        results, pages = print_invoice(Quorvel(options.library), options.output)
    except QuorvelError as error:
        print(f"invoice_host: {error}", file=sys.stderr)
        return 2
    for result in results:
        print(f"wrote {result}")
    print(f"{pages} page{'s' if pages != 1 else ''}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
