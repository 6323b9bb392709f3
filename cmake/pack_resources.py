"""Packs files into a zip archive whose bytes depend on nothing but their names and content.

`cmake -E tar` would do but for the times of last access and change and the user's number, which it
writes beside the time that it lets one choose.

usage: pack_resources.py ARCHIVE FOLDER PATH...    (paths relative to FOLDER, with `/`)
"""

import pathlib
import sys
import zipfile


def main() -> None:
    archive_path, folder, *paths = sys.argv[1:]
    with zipfile.ZipFile(archive_path, "w", zipfile.ZIP_STORED) as archive:
        for path in paths:
            entry = zipfile.ZipInfo(path, date_time=(2000, 1, 1, 0, 0, 0))
            entry.create_system = 3  # permissions as on Unix, wherever this runs
            entry.external_attr = 0o100644 << 16
            archive.writestr(entry, (pathlib.Path(folder) / path).read_bytes())


if __name__ == "__main__":
    main()
