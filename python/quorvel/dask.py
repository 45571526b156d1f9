"""Printing many documents on a Dask cluster: chunks of documents per task, each worker printing
with quorvel.print_document into a shared folder (or returning the bytes), failures per document.

Outputs are written under a temporary name and renamed, so a task that Dask runs again after
losing a worker simply replaces whole files with identical whole files.
"""

import glob
import os
import re
import tempfile
import threading
import uuid

# Kinds that print as a single file; PNG prints one file per page and is left to `quorvel batch`.
SINGLE_FILE_ENDINGS = (".pdf", ".svg", ".jsonl")

# The company profile and the system printer are process-wide: one document at a time per
# process, even on a worker started with several threads.
_PRINTING = threading.Lock()

_PLACEHOLDER = re.compile(r"\{\{|\}\}|\{([^{}]*)\}")


def output_name(template, document, line):
    """Fills a name template as `quorvel batch --name` does: {line}, {type}, {a.b} for the
    document's field a.b, {{ and }} for braces. Raises ValueError for a missing field or a name
    that would leave the output folder."""

    def field(match):
        if match.group(0) in ("{{", "}}"):
            return match.group(0)[0]
        key = match.group(1)
        if key == "line":
            return str(line)
        value = document
        for step in key.split("."):
            if not isinstance(value, dict) or step not in value:
                raise ValueError("output name: {%s} is not in this document" % key)
            value = value[step]
        if isinstance(value, bool):
            return "true" if value else "false"
        if isinstance(value, (str, int, float)):
            return str(value)
        raise ValueError("output name: {%s} is not a single value" % key)

    name = _PLACEHOLDER.sub(field, template)
    steps = name.split("/")
    if not name or name.startswith("/") or any(s in ("", ".", "..") for s in steps):
        raise ValueError("output name %r would leave the output folder" % name)
    if any(ord(c) < 0x20 or ord(c) == 0x7F for c in name):
        raise ValueError("output name %r holds a control character" % name)
    if not name.lower().endswith(SINGLE_FILE_ENDINGS):
        raise ValueError("output name %r: the ending must be .pdf, .svg or .jsonl" % name)
    return name


def _error_number(error):
    for attribute in ("number", "error_number", "errno", "code"):
        value = getattr(error, attribute, None)
        if isinstance(value, int):
            return value
    return None


def _print_whole(quorvel, document, path):
    """Prints into a temporary file beside `path`, then renames it: whole or not at all."""
    folder, base = os.path.split(path)
    os.makedirs(folder or ".", exist_ok=True)
    ending = os.path.splitext(base)[1]
    # A worker killed mid-write leaves its temporaries behind (ours, and the library writer's
    # ".quorvel-tmp-PID-N-" one inside it); this rerun of its task clears them.
    here = glob.escape(folder or ".")
    for pattern in (".%s.tmp-*", ".quorvel-tmp-*-*-.%s.tmp-*"):
        for stale in glob.glob(os.path.join(here, pattern % glob.escape(base))):
            try:
                os.unlink(stale)
            except FileNotFoundError:
                pass
    temporary = os.path.join(folder, ".%s.tmp-%s%s" % (base, uuid.uuid4().hex, ending))
    try:
        with _PRINTING:
            result = quorvel.print_document(document, temporary)
        os.replace(temporary, path)
    finally:
        if os.path.exists(temporary):
            os.unlink(temporary)
    return result if isinstance(result, int) else None


def print_chunk(chunk, out_dir, return_bytes=False, skip_existing=False):
    """Runs on a worker: prints each (line, document, name) of the chunk. Returns one result per
    document: {"line", "name", "path" or "bytes", "pages"} or {"line", "number", "error"}."""
    import quorvel  # on the worker, so the client needs no compiled package

    results = []
    for line, document, name in chunk:
        try:
            if return_bytes:
                with tempfile.TemporaryDirectory(prefix="quorvel-dask-") as folder:
                    path = os.path.join(folder, os.path.basename(name))
                    pages = _print_whole(quorvel, document, path)
                    with open(path, "rb") as printed:
                        results.append({"line": line, "name": name, "bytes": printed.read(), "pages": pages})
                continue
            path = os.path.join(out_dir, name)
            if skip_existing and os.path.exists(path):
                results.append({"line": line, "name": name, "path": path, "skipped": True})
                continue
            pages = _print_whole(quorvel, document, path)
            results.append({"line": line, "name": name, "path": path, "pages": pages})
        except Exception as error:  # one document's failure never stops the chunk
            results.append({"line": line, "number": _error_number(error), "error": str(error)})
    return results


def print_documents(client, documents, out_dir=None, name="{line}-{type}.pdf", chunk_size=50,
                    return_bytes=False, skip_existing=False):
    """Prints every document (a dict in the document file format) on the cluster.

    Each document goes to out_dir/NAME (a folder every worker can reach), or, with
    return_bytes, comes back as bytes. Documents are sent in chunks of `chunk_size`, one task
    each. Returns {"documents", "printed", "skipped", "failures", "results"}: failures list
    each failed document's 1-based line with the automation error number and text, as the
    batch command's summary does."""
    if out_dir is None and not return_bytes:
        raise ValueError("print_documents needs out_dir or return_bytes=True")
    results, jobs, names = [], [], {}
    for line, document in enumerate(documents, start=1):
        try:
            job_name = output_name(name, document, line)
            if job_name in names:
                raise ValueError("output name %r is already used by line %d" % (job_name, names[job_name]))
            names[job_name] = line
            jobs.append((line, document, job_name))
        except ValueError as error:
            results.append({"line": line, "number": None, "error": str(error)})
    chunks = [jobs[i:i + chunk_size] for i in range(0, len(jobs), chunk_size)]
    futures = client.map(print_chunk, chunks, out_dir=out_dir, return_bytes=return_bytes,
                         skip_existing=skip_existing, pure=False)
    for chunk_results in client.gather(futures):
        results.extend(chunk_results)
    results.sort(key=lambda result: result["line"])
    failures = [r for r in results if "error" in r]
    return {
        "documents": len(results),
        "printed": sum(1 for r in results if "error" not in r and not r.get("skipped")),
        "skipped": sum(1 for r in results if r.get("skipped")),
        "failures": [{"line": f["line"], "number": f["number"], "error": f["error"]} for f in failures],
        "results": results,
    }
