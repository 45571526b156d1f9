"""Shared helpers of the package tests: an invoice built by classes, and PDFs read back."""
import json
import os
import pathlib
import subprocess

import quorvel

SOURCE_DIR = pathlib.Path(os.environ.get("QUORVEL_SOURCE_DIR", pathlib.Path(__file__).resolve().parents[2]))
SAMPLES = SOURCE_DIR / "demo" / "samples"


def pdf_text(path):
    return subprocess.run(["pdftotext", "-layout", str(path), "-"], check=True, capture_output=True, text=True).stdout


def pdf_pages(path):
    info = subprocess.run(["pdfinfo", str(path)], check=True, capture_output=True, text=True).stdout
    return int(next(line.split()[1] for line in info.splitlines() if line.startswith("Pages:")))


def make_invoice(number, lines=(("BINDER-A4", "Ring binder, A4, blue", "4", "3.10", "12.40"),)):
    invoice = quorvel.ClassInvoice()
    invoice.printTitle = "Invoice"
    invoice.InvoiceNumber = number
    invoice.InvoiceDate = "02/11/2026"
    invoice.CustomerShortName = "Wrenfield Books"
    for name, description, quantity, price, total in lines:
        item = quorvel.ClassInvoiceItem()
        item.ItemName, item.Description, item.Quantity, item.UnitPrice, item.Total = name, description, quantity, price, total
        invoice.AddItem(item)
    return invoice


def sample(name):
    return json.loads((SAMPLES / f"{name}.json").read_text())
