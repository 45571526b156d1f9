"""The type library's classes from Python: objects, members, collections, printing, errors."""
import json
import subprocess

import pytest

import quorvel
from conftest import make_invoice, pdf_pages, pdf_text


def test_invoice_built_by_classes_prints_to_pdf_under_the_company_profile(tmp_path):
    company = quorvel.ClassCompanyInfo()
    company.SetCompanyInfo("Brackwater Office Supply", "12 Tannery Lane", "", "", "Port Ellison", "Marovia",
                           "+381 44 000 1234", "", "", "", "$", "Dollar")
    invoice = make_invoice("INV-PY-0007", [("PEN-BLK", "Gel pen, black", "10", "1.20", "12.00"),
                                           ("PAD-A5", "Writing pad, A5, ruled", "2", "2.75", "5.50")])
    out = tmp_path / "invoice.pdf"
    with quorvel.printing():
        quorvel.set_output(str(out), "a4")
        quorvel.ClassInvoicePrinter().PrintIt(invoice, True)
        results, pages = quorvel.last_results()
    assert results == [str(out)] and pages == 1
    text = pdf_text(out)
    for expected in ("INV-PY-0007", "Gel pen, black", "Writing pad, A5, ruled", "12.00", "5.50",
                     "Brackwater Office Supply", "12 Tannery Lane"):
        assert expected in text
    assert pdf_pages(out) == 1


def test_objects_keep_their_class_lines_and_values():
    invoice = make_invoice("INV-PY-0008")
    assert isinstance(invoice, quorvel.ClassInvoice) and not isinstance(invoice, quorvel.ClassVoucher)
    assert invoice.InvoiceNumber == "INV-PY-0008"
    assert invoice.invoicenumber == "INV-PY-0008"  # members are found in any case, as hosts expect
    lines = list(invoice.InvoiceItems)
    assert [line.Description for line in lines] == ["Ring binder, A4, blue"]
    assert invoice.InvoiceItems.Count() == 1 and invoice.InvoiceItems.Item(1) == lines[0]
    invoice.HasDiscount = True
    assert invoice.HasDiscount is True
    assert "AddItem" in dir(invoice) and "InvoiceNumber" in dir(invoice)


@pytest.mark.parametrize("width", [11906.0, 12240.0])
def test_preview_draws_one_picture_across_its_own_width(width):
    preview = quorvel.preview(width, 16838.0)
    quorvel.ClassInvoicePrinter().PrintInvoice(preview, make_invoice("INV-PY-0010"), True)
    ops = quorvel.preview_ops(preview)
    texts = [op["text"] for op in ops if op["op"] == "text"]
    assert any("INV-PY-0010" in text for text in texts)
    # The header rule runs from the body's left margin (1000) to 1000 short of the right edge.
    rules = [op for op in ops if op["op"] == "line" and op["x1"] == 1000 and op["y1"] == op["y2"]]
    assert any(op["x2"] == width - 1000 for op in rules)
    assert not any(op["op"] == "page" for op in ops)  # a preview never turns a page


def test_errors_carry_the_automation_number():
    invoice = quorvel.ClassInvoice()
    cases = [
        (lambda: setattr(invoice, "NoSuchField", "x"), 438, "NoSuchField"),
        (lambda: invoice.AddItem("not an item"), 13, ""),
        (lambda: quorvel.preview(-5, 100), 5, ""),
        (lambda: quorvel.set_output("/tmp/out.doc"), 5, ".pdf"),
        (lambda: setattr(quorvel.ClassInvoiceItem(), "Quantity", 2**40), 6, ""),  # past any automation integer
        (lambda: make_invoice("INV-PY-0011").InvoiceItems.Item(2), 9, "index 2"),  # a collection of one line
    ]
    for act, number, words in cases:
        with pytest.raises(quorvel.Error) as caught:
            act()
        assert caught.value.number == number and words in caught.value.message, (number, words)
    with pytest.raises(AttributeError):
        invoice.PrintIt  # noqa: B018 - a member of the printer, not of the invoice


def test_every_file_output_of_the_system_printer(tmp_path):
    invoice = make_invoice("INV-PY-0012")
    written = {}
    for ending in (".jsonl", ".svg", ".png"):
        with quorvel.printing():
            quorvel.set_output(str(tmp_path / f"out{ending}"))
            quorvel.ClassInvoicePrinter().PrintIt(invoice, True)
            written[ending] = quorvel.last_results()[0]
    assert written[".png"] == [str(tmp_path / "out-1.png")]  # one file per page
    assert (tmp_path / "out-1.png").read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
    assert (tmp_path / "out.svg").read_text().lstrip().startswith("<?xml")
    ops = [json.loads(line) for line in (tmp_path / "out.jsonl").read_text().splitlines()]
    assert any(op["op"] == "text" and "INV-PY-0012" in op["text"] for op in ops)


def test_a_queue_output_reaches_the_print_system(monkeypatch):
    # No scheduler listens on the discard port: the error is the print system's, number 482.
    monkeypatch.setenv("CUPS_SERVER", "127.0.0.1:9")
    with quorvel.printing():
        quorvel.set_queue("no-such-queue")
        with pytest.raises(quorvel.Error) as caught:
            quorvel.ClassInvoicePrinter().PrintIt(make_invoice("INV-PY-0013"), True)
        quorvel.set_output("quorvel-print.pdf")
    assert caught.value.number == 482


def test_pdfa_with_an_attached_invoice_xml(tmp_path):
    xml = tmp_path / "factur-x.xml"
    xml.write_bytes(b"<?xml version=\"1.0\"?><invoice number=\"INV-PY-0011\"/>\n")
    out = tmp_path / "archive.pdf"
    with quorvel.printing():
        quorvel.set_output(str(tmp_path / "page.png"))
        with pytest.raises(quorvel.Error) as refused:
            quorvel.set_pdfa()
        assert refused.value.number == 5 and "PDF/A" in refused.value.message
        quorvel.set_output(str(out))
        with pytest.raises(quorvel.Error) as missing:
            quorvel.attach(str(tmp_path / "missing.xml"))
        assert missing.value.number == 75 and "missing.xml" in missing.value.message
        quorvel.set_pdfa(True)
        quorvel.attach(str(xml), description="the invoice as XML")
        quorvel.ClassInvoicePrinter().PrintIt(make_invoice("INV-PY-0011"), True)
        quorvel.set_output(str(tmp_path / "plain.pdf"))  # a new output starts without them
        quorvel.ClassInvoicePrinter().PrintIt(make_invoice("INV-PY-0012"), True)
    shown = subprocess.run(["qpdf", "--show-attachment=factur-x.xml", str(out)], capture_output=True, check=True)
    assert shown.stdout == xml.read_bytes()
    assert b"<pdfaid:part>3</pdfaid:part>" in out.read_bytes()  # the XMP packet is not compressed
    plain = subprocess.run(["qpdf", "--list-attachments", str(tmp_path / "plain.pdf")], capture_output=True, text=True)
    assert "no embedded files" in plain.stdout
    assert "INV-PY-0011" in pdf_text(out)
