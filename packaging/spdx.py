#!/usr/bin/python3
"""Prints what the program consists of as an SPDX 2.3 document: packaging/spdx.py PRODUCT VERSION COMMIT

PRODUCT is the folder that users get; its licences/versions.txt and sources.sha256 say what the libraries were built from.
"""

import datetime
import hashlib
import json
import os
import pathlib
import sys

# Which file a library is in, its terms, and who holds them.
LIBRARIES = {
    "mpg123": ("vbmp3.dll", "LGPL-2.1-only", "Michael Hipp and others, the mpg123 project"),
    "soundtouch": ("vbmp3.dll", "LGPL-2.1-or-later", "Olli Parviainen"),
    "kissfft": ("vbmp3.dll", "BSD-3-Clause", "Mark Borgerding"),
    "lame": ("gogo.dll", "LGPL-2.0-or-later AND LGPL-2.1-or-later AND GPL-1.0-or-later", "The LAME Project and others"),
}
RUNTIMES = {
    "gcc-mingw-w64": ("GPL-3.0-or-later WITH GCC-exception-3.1", "Free Software Foundation, Inc."),
    "mingw-w64": ("ZPL-2.1 AND MIT", "the mingw-w64 project"),
}
PROGRAM_FILES = ("Quenlox.exe", "vbmp3.dll", "gogo.dll")


def package(name, version, licence, holder, checksums=()):
    result = {"SPDXID": f"SPDXRef-{name}", "name": name, "versionInfo": version, "downloadLocation": "NOASSERTION",
              "filesAnalyzed": False, "licenseConcluded": licence, "licenseDeclared": licence,
              "copyrightText": f"Copyright {holder}", "supplier": "NOASSERTION"}
    if checksums:
        result["comment"] = "Built from these files: " + ", ".join(f"{name} (SHA256 {sha})" for sha, name in checksums)
    return result


def file_entry(product, name):
    data = (product / name).read_bytes()
    return {"SPDXID": f"SPDXRef-file-{name}", "fileName": f"./{name}", "licenseConcluded": "NOASSERTION",
            "copyrightText": "NOASSERTION",
            "checksums": [{"algorithm": kind.upper(), "checksumValue": hashlib.new(kind, data).hexdigest()}
                          for kind in ("sha1", "sha256")]}


def related(one, how, other):
    return {"spdxElementId": f"SPDXRef-{one}", "relationshipType": how, "relatedSpdxElement": f"SPDXRef-{other}"}


def main():
    product, version, commit = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3]
    licences = product / "licences"
    versions = dict(line.split(" ", 1) for line in (licences / "versions.txt").read_text().splitlines())
    sources = [line.split("  ", 1) for line in (licences / "sources.sha256").read_text().splitlines()]
    time = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)

    packages = [package("Quenlox", version, "MIT", "2026 the Quenlox project")]
    relations = [related("DOCUMENT", "DESCRIBES", "Quenlox")]
    for name, (inside, licence, holder) in LIBRARIES.items():
        packages.append(package(name, versions.pop(name), licence, holder,
                                [source for source in sources if source[1].startswith(name + "_")]))
        relations.append(related(f"file-{inside}", "STATIC_LINK", name))
    for name, (licence, holder) in RUNTIMES.items():
        packages.append(package(name, versions.pop(name), licence, holder))
        relations += [related(f"file-{inside}", "STATIC_LINK", name) for inside in PROGRAM_FILES]
    if versions:
        sys.exit(f"spdx: nothing is known here of {', '.join(versions)}")
    relations += [related("Quenlox", "CONTAINS", f"file-{name}") for name in PROGRAM_FILES]
    json.dump({"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
               "name": f"Quenlox-{version}", "documentNamespace": f"urn:quenlox:spdx:{version}:{commit}",
               "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: packaging/spdx.py"]},
               "packages": packages, "files": [file_entry(product, name) for name in PROGRAM_FILES],
               "relationships": relations}, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
