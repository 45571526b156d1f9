"""Quorvel for Python: lays out and prints business documents.

Every class of the Quorvel type library is here under its own name, with the properties and
methods of its interface (looked up by name, as automation hosts do):

    import quorvel
    inv = quorvel.ClassInvoice()
    inv.InvoiceNumber = "INV-1"
    quorvel.set_output("invoice.pdf")
    quorvel.ClassInvoicePrinter().PrintIt(inv, True)
"""
import contextlib
import json

from . import _quorvel
from ._quorvel import (Error, Object, attach, clear_attachments, end_doc, kill_doc, last_results, set_output,
                       set_pdfa, set_queue, system_printer)

__version__ = _quorvel.version()


class _ClassOfLibrary(type):
    """A type-library class: calling it creates the object by name; isinstance checks its class."""

    def __call__(cls):
        return _quorvel.create(cls.__name__)

    def __instancecheck__(cls, value):
        return isinstance(value, Object) and value.class_name == cls.__name__


for _name, _creatable, _is_collection, _members in _quorvel.classes():
    if _creatable:
        globals()[_name] = _ClassOfLibrary(_name, (), {"__doc__": f"Quorvel.{_name}", "__module__": __name__})


@contextlib.contextmanager
def printing():
    """One thread's turn at the process-wide printer and company profile.

    Hold it around the calls that belong together (set_output, PrintIt, last_results) when more
    than one thread prints. Each single call into Quorvel takes the same turn by itself.
    """
    _quorvel.acquire()
    try:
        yield
    finally:
        _quorvel.release()


def preview(width=11906.0, height=16838.0):
    """A new in-memory preview surface (twips; A4 by default) for the printers' Print… routines."""
    return _quorvel.preview(width, height)


def preview_ops(surface):
    """What a preview surface holds: its drawing operations as dicts, in the order drawn."""
    return [json.loads(line) for line in _quorvel.preview_ops(surface)]


def print_document(document, output, paper="a4", preview=False):
    """Prints a document given in the shape of a document file (a dict, as `quorvel schema`
    describes it) to a .pdf, .png, .svg or .jsonl file. Returns the files written."""
    return _quorvel.print_document(json.dumps(document), str(output), paper, preview)


def generated_stub():
    """The type stub (__init__.pyi) for this package, written from the type library."""
    from . import _stub
    return _stub.generate(_quorvel.classes())
