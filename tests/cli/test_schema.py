"""`quorvel schema` against every sample, checked by an independent validator (jsonschema)."""
import copy
import json
import os
import pathlib
import subprocess

import jsonschema
import pytest

COMMAND = os.environ["QUORVEL_COMMAND"]
SAMPLES = sorted((pathlib.Path(os.environ["QUORVEL_SOURCE_DIR"]) / "demo" / "samples").glob("*.json"))


@pytest.fixture(scope="module")
def validator():
    schema = json.loads(subprocess.run([COMMAND, "schema"], check=True, capture_output=True, text=True).stdout)
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def test_there_are_samples_of_every_kind():
    names = {path.stem for path in SAMPLES}
    assert {"invoice", "voucher", "delivery_note", "receipt", "statement", "cheque_list", "letterhead"} <= names


@pytest.mark.parametrize("path", SAMPLES, ids=lambda path: path.stem)
def test_every_sample_is_valid(validator, path):
    errors = [error.message for error in validator.iter_errors(json.loads(path.read_text()))]
    assert errors == []


def _misspelt(document, where, wrong):
    changed = copy.deepcopy(document)
    target = changed
    for key in where:
        target = target[key]
    first = next(iter(target))
    target[wrong] = target.pop(first)
    return changed


@pytest.mark.parametrize("where, wrong", [
    ((), "printHeadr"),
    (("company",), "CompanyNme"),
    (("document",), "printTitel"),
    (("document", "InvoiceItems", 0), "Descripton"),
])
def test_a_misspelt_name_is_rejected(validator, where, wrong):
    document = json.loads((pathlib.Path(os.environ["QUORVEL_SOURCE_DIR"]) / "demo/samples/invoice.json").read_text())
    assert not validator.is_valid(_misspelt(document, where, wrong))


def test_wrong_value_types_and_classes_are_rejected(validator):
    assert not validator.is_valid({"type": "invoice", "document": {"hasBilling": "yes"}})
    assert not validator.is_valid({"type": "invoice", "pageNumber": "2"})
    # A voucher's fields are not an invoice's: the document's class follows "type".
    assert not validator.is_valid({"type": "invoice", "document": {"PayeeName": "x"}})
    assert validator.is_valid({"type": "voucher", "document": {"PayeeName": "x"}})
    assert not validator.is_valid({"type": "invoise"})
