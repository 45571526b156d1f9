"""Writes the package's type stub from the type library, so editors complete every name."""

_PYTHON_TYPES = {"String": "str", "Boolean": "bool", "Integer": "int", "Long": "int", "Single": "float",
                 "Double": "float", "Variant": "Any", "Object": "Object", "Collection": "Object", "": "None"}

_HEADER = '''"""Type hints for quorvel, generated from the type library by quorvel.generated_stub()."""
from typing import Any, Iterator, Optional

__version__: str

class Error(RuntimeError):
    number: int
    message: str
    description: str
    context: str

class Object:
    class_name: str
    def __getattr__(self, name: str) -> Any: ...
    def __setattr__(self, name: str, value: Any) -> None: ...
    def __iter__(self) -> Iterator[Any]: ...
    def __len__(self) -> int: ...

def set_output(path: str, paper: Optional[str] = None) -> None: ...
def set_queue(queue: str = "", paper: Optional[str] = None) -> None: ...
def set_pdfa(on: bool = True) -> None: ...
def attach(path: str, mime_type: Optional[str] = None, relationship: Optional[str] = None, description: Optional[str] = None) -> None: ...
def clear_attachments() -> None: ...
def end_doc() -> None: ...
def kill_doc() -> None: ...
def last_results() -> tuple[list[str], int]: ...
def system_printer() -> Object: ...
def preview(width: float = 11906.0, height: float = 16838.0) -> Object: ...
def preview_ops(surface: Object) -> list[dict]: ...
def print_document(document: dict, output: str, paper: str = "a4", preview: bool = False) -> list[str]: ...
def printing() -> Any: ...
def generated_stub() -> str: ...
'''


def _python_type(name, class_names):
    if name in class_names:
        return name
    return _PYTHON_TYPES.get(name, "Any")


def _member_lines(members, class_names):
    lines, seen = [], set()
    for name, kind, type_name, params in members:
        result = _python_type(type_name, class_names)
        if kind == "method" or (kind == "get" and params):
            if name in seen:
                continue
            seen.add(name)
            args = "".join(f", {p}: {_python_type(t, class_names)}{' = ...' if optional else ''}"
                           for p, t, optional in params)
            lines.append(f"    def {name}(self{args}) -> {result}: ...")
        elif name not in seen:
            seen.add(name)
            lines.append(f"    {name}: {result}")
    return lines


def generate(classes):
    class_names = {name for name, _, _, _ in classes}
    parts = [_HEADER]
    for name, creatable, is_collection, members in classes:
        if not creatable:
            continue
        body = _member_lines(members, class_names) or ["    ..."]
        parts.append(f"\nclass {name}(Object):\n" + "\n".join(body) + "\n")
    return "".join(parts)
