#!/usr/bin/python3
"""The month-end batch on a two-worker local Dask cluster: one-page statements to separate PDFs
through quorvel.dask, beside `quorvel batch` on the same documents in the same run.

Usage: bench/dask_batch.py BUILD_DIR [DOCUMENTS]   (needs the quorvel Python package on the path)
"""

import json
import os
import subprocess
import sys
import tempfile
import time

from distributed import Client, LocalCluster

import quorvel.dask


def one_page_statement(sample, serial):
    document = json.loads(json.dumps(sample))
    body = document["document"]
    body["PrintPDCChecks"] = False
    body["StatementNumber"] = "ST-%d" % serial
    body["StatementItems"] = body["StatementItems"][:8]
    return document


def main():
    build = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 10000
    source = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    with open(os.path.join(source, "demo", "samples", "statement.json")) as sample_file:
        sample = json.load(sample_file)
    documents = [one_page_statement(sample, n) for n in range(1, count + 1)]
    with tempfile.TemporaryDirectory(prefix="quorvel-dask-bench-") as folder:
        lines = os.path.join(folder, "statements.jsonl")
        with open(lines, "w") as out:
            out.writelines(json.dumps(d) + "\n" for d in documents)
        started = time.monotonic()
        subprocess.run([os.path.join(build, "cli", "quorvel"), "batch", lines, "-o", os.path.join(folder, "batch"),
                        "--jobs", "2"], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        batch_seconds = time.monotonic() - started
        with LocalCluster(n_workers=2, processes=True, threads_per_worker=1, host="127.0.0.1",
                          dashboard_address=None) as cluster, Client(cluster) as client:
            client.run(lambda: __import__("quorvel"))  # each worker loads the package before timing
            started = time.monotonic()
            summary = quorvel.dask.print_documents(client, documents, os.path.join(folder, "dask"), chunk_size=100)
            dask_seconds = time.monotonic() - started
    if summary["printed"] != count:
        sys.exit("dask printed %d of %d" % (summary["printed"], count))
    print("%d one-page statements, two workers each" % count)
    print("quorvel batch --jobs 2: %.1f s, %.0f documents/s" % (batch_seconds, count / batch_seconds))
    print("quorvel.dask, 2-worker LocalCluster: %.1f s, %.0f documents/s (%.2f of the batch's rate)"
          % (dask_seconds, count / dask_seconds, batch_seconds / dask_seconds))


if __name__ == "__main__":
    main()
