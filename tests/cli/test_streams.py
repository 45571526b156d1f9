"""`quorvel print - -o -`: the document from standard input, the output to standard output."""
import json
import os
import pathlib
import subprocess

COMMAND = os.environ["QUORVEL_COMMAND"]
INVOICE = pathlib.Path(os.environ["QUORVEL_SOURCE_DIR"]) / "demo" / "samples" / "invoice.json"


def run(args, stdin):
    return subprocess.run([COMMAND, *args], input=stdin, capture_output=True, timeout=120)


def test_pdf_from_standard_input_to_standard_output(tmp_path):
    done = run(["print", "-", "-o", "-"], INVOICE.read_bytes())
    assert done.returncode == 0, done.stderr
    assert done.stdout.startswith(b"%PDF-") and done.stdout.rstrip().endswith(b"%%EOF")
    (tmp_path / "out.pdf").write_bytes(done.stdout)
    text = subprocess.run(["pdftotext", str(tmp_path / "out.pdf"), "-"], capture_output=True, text=True).stdout
    assert "INV-00318" in text and "Whiteboard markers, four colours" in text
    assert b"wrote standard output" in done.stderr


def test_ops_to_standard_output_are_the_same_as_to_a_file(tmp_path):
    done = run(["print", "-", "-o", "-", "--format", "jsonl"], INVOICE.read_bytes())
    assert done.returncode == 0, done.stderr
    to_file = run(["print", str(INVOICE), "-o", str(tmp_path / "ops.jsonl")], b"")
    assert to_file.returncode == 0
    assert done.stdout == (tmp_path / "ops.jsonl").read_bytes()
    assert all(json.loads(line)["op"] for line in done.stdout.decode().splitlines())


def test_a_failed_document_writes_nothing_to_standard_output():
    document = json.loads(INVOICE.read_text())
    document["document"]["InvoiceNumbr"] = "x"
    done = run(["print", "-", "-o", "-"], json.dumps(document).encode())
    assert done.returncode != 0 and done.stdout == b""
    assert b'did you mean \\"InvoiceNumber\\"' in done.stderr or b'did you mean "InvoiceNumber"' in done.stderr
    broken = run(["print", "-", "-o", "-"], b"{\"type\": \"invoice\", ")
    assert broken.returncode != 0 and broken.stdout == b"" and b"standard input is not valid JSON" in broken.stderr
    png = run(["print", "-", "-o", "-", "--format", "png"], INVOICE.read_bytes())
    assert png.returncode != 0 and png.stdout == b"" and b"PNG" in png.stderr
