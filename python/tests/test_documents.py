"""print_document with the document-file shape, and two threads taking turns at the printer."""
import threading

import pytest

import quorvel
from conftest import make_invoice, pdf_text, sample


def test_invoice_by_dict_prints_to_pdf(tmp_path):
    document = sample("invoice")
    document["document"]["InvoiceNumber"] = "INV-DICT-0101"
    out = tmp_path / "dict.pdf"
    assert quorvel.print_document(document, out) == [str(out)]
    text = pdf_text(out)
    for expected in ("INV-DICT-0101", "Whiteboard markers, four colours", "Corbel & Finch Architects", "4,330.95"):
        assert expected in text


def test_misspelt_field_names_the_nearest_one(tmp_path):
    document = sample("invoice")
    document["document"]["InvoiceNumbr"] = document["document"].pop("InvoiceNumber")
    out = tmp_path / "never.pdf"
    with pytest.raises(quorvel.Error) as caught:
        quorvel.print_document(document, out)
    assert caught.value.number == 438
    assert 'document.InvoiceNumbr' in caught.value.message and 'did you mean "InvoiceNumber"' in caught.value.message
    assert not out.exists()


def _print_turns(name, count, tmp_path, failures):
    try:
        for i in range(count):
            number = f"INV-{name}-{i:03d}"
            out = tmp_path / f"{name}-{i}.pdf"
            if i % 2:
                document = sample("invoice")
                document["document"]["InvoiceNumber"] = number
                written = quorvel.print_document(document, out)
            else:
                with quorvel.printing():
                    quorvel.set_output(str(out))
                    quorvel.ClassInvoicePrinter().PrintIt(make_invoice(number), True)
                    written = quorvel.last_results()[0]
            other = "INV-" + ("B" if name == "A" else "A")
            text = pdf_text(out)
            if written != [str(out)] or number not in text or other in text:
                failures.append(f"{out.name} does not hold {number} alone (results {written})")
    except Exception as error:  # reported by the test, not lost in the thread
        failures.append(f"{name}: {error!r}")


def test_two_threads_take_turns(tmp_path):
    failures = []
    threads = [threading.Thread(target=_print_turns, args=(name, 6, tmp_path, failures)) for name in "AB"]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(timeout=120)
    assert not any(thread.is_alive() for thread in threads)
    assert failures == []
    assert len(list(tmp_path.glob("*.pdf"))) == 12
