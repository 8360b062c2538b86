"""folders.py SRC MAP: every file of src/ includes only what its folder links, as src/CMakeLists.txt names it: headers
of its own folder and of folders below, and headers of libraries that the folder itself names or gets publicly. And the
document MAP has a row for each folder, from the top down."""

import pathlib
import re
import sys

# Which target a header belongs to, by the beginning of its name.
LIBRARIES = {
    "boost/": "Boost::headers",
    "nlohmann/": "nlohmann_json::nlohmann_json",
    "openssl/": "OpenSSL::Crypto",
    "systemd/": "PkgConfig::LIBSYSTEMD",
    "unicode/": "ICU::uc",
}


def target_of(folder):
    return "tarnwell_" + folder.lower().replace("/", "_")


def links_of_folders(text):
    """Maps each folder to what it links publicly and privately, names of CMake lists resolved."""
    lists = {}
    for name, values in re.findall(r"^\s*set\((\w+) ([^)]*)\)", text, re.MULTILINE):
        lists.setdefault(name, []).extend(values.split())
    folders = {}
    for call in re.findall(r"^ *tarnwell_module\(([^)]*)\)", text, re.MULTILINE):
        call = call.split("HEADERS")[0]  # what is compiled once is not linked; it stands last
        folder, *words = re.sub(r"\$\{(\w+)\}", lambda list_: " ".join(lists[list_[1]]), call).split()
        links = {"PUBLIC": [], "PRIVATE": []}
        for word in words:
            if word in links:
                kind = links[word]
            else:
                kind.append(word)
        folders[folder] = links
    return folders


def reach_of_folders(folders):
    """Maps each folder to all targets whose headers it may include."""
    given = {}  # target: itself and what it links publicly, and they in turn
    reach = {}
    for folder, links in folders.items():  # a folder stands after those that it links
        given[target_of(folder)] = {target_of(folder)}.union(*(given.get(link, {link}) for link in links["PUBLIC"]))
        reach[folder] = given[target_of(folder)].union(*(given.get(link, {link}) for link in links["PRIVATE"]))
    return reach


def target_of_header(header, folders):
    for beginning, target in LIBRARIES.items():
        if header.startswith(beginning):
            return target
    folder = str(pathlib.PurePosixPath(header).parent)
    return target_of(folder) if folder in folders else None


def rows_of_map(text, folders):
    """The folders that the rows of the document's tables begin with, in their order."""
    return [name for name in re.findall(r"^\| `([\w/]+)` \|", text, re.MULTILINE) if name in folders]


def main(source, document):
    folders = links_of_folders((source / "CMakeLists.txt").read_text(encoding="utf-8"))
    reach = reach_of_folders(folders)
    wrong = []
    for path in sorted(source.rglob("*.h")) + sorted(source.rglob("*.cpp")):
        name = path.relative_to(source).as_posix()
        folder = str(pathlib.PurePosixPath(name).parent)
        if folder not in folders:
            wrong.append(f"{name}: its folder is not in src/CMakeLists.txt")
            continue
        for header in re.findall(r'^#include ["<]([^">]+)[">]', path.read_text(encoding="utf-8"), re.MULTILINE):
            target = target_of_header(header, folders)
            if target and target not in reach[folder]:
                wrong.append(f"{name} includes {header}, and {folder} does not link {target}")
    shown = rows_of_map(document.read_text(encoding="utf-8"), folders)
    if sorted(shown) != sorted(folders):
        wrong.append(f"{document.name} shows {shown}, and src/CMakeLists.txt has {sorted(folders)}")
    wrong += [f"{document.name} shows {folder} above {above}, which links it" for place, folder in enumerate(shown)
              for above in shown[place + 1:] if target_of(folder) in reach[above]]
    for line in wrong:
        print(line)
    print(f"{len(folders)} folders, {len(wrong)} faults")
    return bool(wrong) or not folders


sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
