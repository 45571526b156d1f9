"""quorvel.dask on a real two-process LocalCluster on loopback: 200 documents printed while one
worker process is killed part way; every output is still there, whole, and readable."""

import os
import signal
import threading
import time

import pytest

quorvel = pytest.importorskip("quorvel", reason="the quorvel Python package is not built or not on the path")
if not hasattr(quorvel, "print_document"):
    pytest.skip("this quorvel package has no print_document", allow_module_level=True)
qdask = pytest.importorskip("quorvel.dask", reason="quorvel.dask is not installed beside the package")
distributed = pytest.importorskip("distributed")
from conftest import pdf_pages  # noqa: E402 - after the skips above

COMPANIES = ["Quillmoor Trading Co.", "Harbourline Stationers"]


def invoice(n):
    return {
        "type": "invoice",
        "company": {"CompanyName": COMPANIES[n % 2], "City": "Dunmerrow"},
        "document": {
            "printTitle": "Invoice",
            "InvoiceNumber": "INV-%04d" % n,
            "InvoiceDate": "31/03/2024",
            "Total": "10.00",
            "InvoiceItems": [{"ItemName": "PAPER-A4", "Quantity": "2", "UnitPrice": "5.00", "Total": "10.00"}],
        },
    }


@pytest.fixture
def cluster():
    with distributed.LocalCluster(n_workers=2, processes=True, threads_per_worker=1, host="127.0.0.1",
                                  dashboard_address=None, silence_logs=40) as local:
        with distributed.Client(local) as client:
            yield client


def test_a_worker_killed_part_way_costs_no_document(cluster, tmp_path):
    out = tmp_path / "out"
    documents = [invoice(n) for n in range(1, 201)]
    outcome = {}

    def run():
        outcome["summary"] = qdask.print_documents(cluster, documents, str(out),
                                                   name="{document.InvoiceNumber}.pdf", chunk_size=10)

    printing = threading.Thread(target=run)
    printing.start()
    deadline = time.monotonic() + 120
    while time.monotonic() < deadline and len(list(out.glob("*.pdf"))) < 20:
        time.sleep(0.02)
    pids = cluster.run(os.getpid)
    victim = sorted(pids.values())[0]
    os.kill(victim, signal.SIGKILL)
    printing.join(timeout=300)
    assert not printing.is_alive(), "the batch did not finish after a worker was lost"

    summary = outcome["summary"]
    assert summary["failures"] == []
    assert summary["printed"] == 200
    names = sorted(p.name for p in out.iterdir())
    assert names == sorted("INV-%04d.pdf" % n for n in range(1, 201)), "no temporaries, no document missing"
    assert all(pdf_pages(out / name) == 1 for name in names)
    assert victim not in cluster.run(os.getpid).values(), "the killed worker was replaced, not revived"


def test_failures_come_back_per_document_and_bytes_can_return(cluster):
    documents = [invoice(1), {"type": "quote"}, invoice(3), dict(invoice(4), document={"Nonsense": "x"})]
    summary = qdask.print_documents(cluster, documents, return_bytes=True, chunk_size=2)
    assert [f["line"] for f in summary["failures"]] == [2, 4]
    assert all(f["error"] for f in summary["failures"])
    printed = [r for r in summary["results"] if "bytes" in r]
    assert [r["line"] for r in printed] == [1, 3]
    assert all(r["bytes"].startswith(b"%PDF-") for r in printed)


def test_names_that_leave_the_folder_fail_alone():
    assert qdask.output_name("{document.InvoiceNumber}.pdf", invoice(7), 1) == "INV-0007.pdf"
    assert qdask.output_name("{line}-{type}.svg", invoice(7), 12) == "12-invoice.svg"
    for bad in ("../x.pdf", "/abs.pdf", "a//b.pdf", "x.png", "{document.Missing}.pdf"):
        with pytest.raises(ValueError):
            qdask.output_name(bad, invoice(7), 1)
