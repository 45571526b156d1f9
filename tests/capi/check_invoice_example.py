#!/usr/bin/env python3
"""Runs examples/invoice_host.py against a built libquorvel.so and checks the PDF it prints."""
import importlib.util
import re
import subprocess
import sys
import tempfile


def load_example(path):
    found = importlib.util.spec_from_file_location("invoice_host", path)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module


def squeezed(text):
    return re.sub(r"\s+", " ", text)


def main(library, example_path):
    example = load_example(example_path)
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        pdf = f"{folder}/invoice.pdf"
        run = subprocess.run([sys.executable, example_path, "--library", library, "-o", pdf],
                             capture_output=True, text=True)
        if run.returncode != 0:
            print(f"FAIL: the example exited with {run.returncode}: {run.stderr}")
            return 1
        if run.stdout.splitlines() != [f"wrote {pdf}", "1 page"]:
            failures.append(f"unexpected report: {run.stdout!r}")
        pages = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True, check=True).stdout
        if not re.search(r"^Pages:\s+1$", pages, re.M):
            failures.append("the PDF is not one page")
        text = squeezed(subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, text=True, check=True).stdout)
    # Everything the host set that the invoice prints as it stands, with the printer's own captions.
    expected = [example.COMPANY[0], example.INVOICE["InvoiceNumber"], example.INVOICE["InvoiceDate"],
                example.INVOICE["LPONumber"], example.INVOICE["Billing1"], example.INVOICE["CustomerNote1"],
                example.INVOICE["SumOfTotal"], "---Other Expenses---", "Subtotal:", "Discount:",
                "Other Expenses:", "Total:", example.INVOICE["subTotal"], example.INVOICE["InvoiceDiscount"],
                example.INVOICE["TotalOtherExpenses"], example.INVOICE["Total"]]
    for item in example.ITEMS + example.EXPENSES:
        expected += [item[0], item[1], item[4]]
    failures += [f"missing from the PDF: {value!r}" for value in expected if squeezed(value) not in text]
    for failure in failures:
        print(f"FAIL: {failure}")
    print(f"{len(expected) - len(failures)} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
