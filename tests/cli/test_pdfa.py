"""`quorvel print --pdfa --attach FILE`: a Factur-X invoice from the command, read back by qpdf."""
import base64
import json
import os
import pathlib
import subprocess

COMMAND = os.environ["QUORVEL_COMMAND"]
INVOICE = pathlib.Path(os.environ["QUORVEL_SOURCE_DIR"]) / "demo" / "samples" / "invoice.json"
SRGB = pathlib.Path("/usr/share/color/icc/sRGB.icc")
XML = (b'<?xml version="1.0" encoding="UTF-8"?>\n<rsm:CrossIndustryInvoice xmlns:rsm="urn:x" xmlns:ram="urn:y">'
       b"<ram:GuidelineSpecifiedDocumentContextParameter><ram:ID>urn:cen.eu:en16931:2017</ram:ID>"
       b"</ram:GuidelineSpecifiedDocumentContextParameter></rsm:CrossIndustryInvoice>\n")


def run(*args, stdin=b""):
    return subprocess.run([COMMAND, *map(str, args)], input=stdin, capture_output=True, timeout=120)


def qpdf(*args):
    return subprocess.run(["qpdf", *map(str, args)], capture_output=True, check=True, timeout=60).stdout


def objects(pdf):
    """The PDF's objects as qpdf reads them, every stream decoded (base64 in the JSON)."""
    return json.loads(qpdf("--json=2", "--json-stream-data=inline", "--decode-level=all", pdf))["qpdf"][1]


def test_factur_x_invoice_from_the_command(tmp_path):
    (tmp_path / "factur-x.xml").write_bytes(XML)
    (tmp_path / "lines.csv").write_bytes(b"item;qty\r\nmarkers;4\r\n")
    pdf = tmp_path / "out.pdf"
    done = run("print", INVOICE, "-o", pdf, "--pdfa", "--attach", tmp_path / "factur-x.xml",
               "--attach", tmp_path / "lines.csv")
    assert done.returncode == 0, done.stderr
    check = subprocess.run(["qpdf", "--check", pdf], capture_output=True, text=True).stdout
    assert "No syntax or stream encoding errors" in check and "WARNING" not in check
    listed = qpdf("--list-attachments", pdf).decode()
    assert "factur-x.xml" in listed and "lines.csv" in listed
    assert qpdf("--show-attachment=factur-x.xml", pdf) == XML
    assert qpdf("--show-attachment=lines.csv", pdf) == b"item;qty\r\nmarkers;4\r\n"

    found = objects(pdf)
    catalog = found["obj:" + found["trailer"]["value"]["/Root"]]["value"]
    xmp = base64.b64decode(found["obj:" + catalog["/Metadata"]]["stream"]["data"]).decode()
    assert "<pdfaid:part>3</pdfaid:part>" in xmp and "<pdfaid:conformance>B</pdfaid:conformance>" in xmp
    assert "<fx:ConformanceLevel>EN 16931</fx:ConformanceLevel>" in xmp
    (intent,) = catalog["/OutputIntents"]
    assert intent["/S"] == "/GTS_PDFA1"
    assert base64.b64decode(found["obj:" + intent["/DestOutputProfile"]]["stream"]["data"]) == SRGB.read_bytes()
    relationships = {found["obj:" + ref]["value"]["/UF"]: found["obj:" + ref]["value"]["/AFRelationship"]
                     for ref in catalog["/AF"]}
    assert relationships == {"u:factur-x.xml": "/Alternative", "u:lines.csv": "/Unspecified"}
    assert b"/Subtype/text#2Fxml/" in pdf.read_bytes() and b"/Subtype/text#2Fcsv/" in pdf.read_bytes()
    text = subprocess.run(["pdftotext", pdf, "-"], capture_output=True, text=True).stdout
    assert "INV-00318" in text


def test_pdfa_to_standard_output(tmp_path):
    done = run("print", "-", "-o", "-", "--pdfa", stdin=INVOICE.read_bytes())
    assert done.returncode == 0, done.stderr
    (tmp_path / "out.pdf").write_bytes(done.stdout)
    found = objects(tmp_path / "out.pdf")
    assert "/Metadata" in found["obj:" + found["trailer"]["value"]["/Root"]]["value"]


def test_refusals_name_what_is_wrong_and_write_nothing(tmp_path):
    missing = run("print", INVOICE, "-o", tmp_path / "a.pdf", "--attach", tmp_path / "nowhere.xml")
    assert missing.returncode != 0 and b"nowhere.xml" in missing.stderr
    png = run("print", INVOICE, "-o", tmp_path / "page.png", "--pdfa")
    assert png.returncode != 0 and b"PDF/A" in png.stderr and b"png" in png.stderr
    (tmp_path / "factur-x.xml").write_bytes(XML)
    svg = run("print", "-", "-o", "-", "--format", "svg", "--attach", tmp_path / "factur-x.xml",
              stdin=INVOICE.read_bytes())
    assert svg.returncode != 0 and svg.stdout == b"" and b"attachments" in svg.stderr
    assert sorted(p.name for p in tmp_path.iterdir()) == ["factur-x.xml"]
