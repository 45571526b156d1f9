"""The type stub in the package is the one the type library gives today."""
import pathlib

import quorvel


def test_stub_matches_the_type_library():
    stub = pathlib.Path(__file__).resolve().parents[1] / "quorvel" / "__init__.pyi"
    assert stub.read_text() == quorvel.generated_stub(), "regenerate python/quorvel/__init__.pyi (see README)"


def test_stub_names_every_creatable_class_and_member():
    stub = quorvel.generated_stub()
    assert "class ClassInvoicePrinter(Object):" in stub
    assert "    def PrintIt(self, invoice: ClassInvoice, printHeader: bool) -> None: ..." in stub
    assert "    InvoiceNumber: str" in stub
    for name, creatable, _, _ in quorvel._quorvel.classes():
        assert (f"class {name}(Object):" in stub) == creatable
