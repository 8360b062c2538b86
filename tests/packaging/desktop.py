#!/usr/bin/env python3
"""A desktop knows the companion app: its entry, its description, its icon, and for macOS the parts of its bundle."""

import configparser
import plistlib
import re
import xml.etree.ElementTree as xml

from support import build, check, check_equal, finish, install, need, run, source, temporary_directory, version

need("desktop-file-validate", "desktop-file-utils")
need("appstreamcli", "appstream")

ID = "app.tarnwell.Tarnwell"
LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
SIZES = (16, 24, 32, 48, 64, 128, 256, 512)


def png_size(data):
    """Width and height, which stand first in a PNG. Absent when it is none."""
    if data[:16] != b"\x89PNG\r\n\x1a\n\x00\x00\x00\rIHDR":
        return None, None
    return int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")


def icns_pictures(data):
    """The pictures of an icns file by their names."""
    found, at = {}, 8
    check_equal("an icns file tells its length", (data[:4], int.from_bytes(data[4:8], "big")), (b"icns", len(data)))
    while at < len(data):
        length = int.from_bytes(data[at + 4:at + 8], "big")
        found[data[at:at + 4].decode()] = data[at + 8:at + length]
        at += length
    return found


with temporary_directory() as directory:
    top = install(directory, "/usr") / "usr"

    entry = top / f"share/applications/{ID}.desktop"
    verdict = run("desktop-file-validate", entry)
    check("desktop-file-validate accepts the entry", (verdict.returncode, verdict.stdout) == (0, ""), verdict.stdout)
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(entry, encoding="utf-8")
    desktop = dict(parser["Desktop Entry"])
    for key in ("GenericName", "Comment", "Keywords"):
        check(f"the entry's {key} is there in English and Japanese",
              desktop[key].isascii() and re.search("[ぁ-んァ-ン]", desktop[f"{key}[ja]"]), str(desktop))
    check("the entry starts the installed program", (top / "bin" / desktop["Exec"]).is_file(), desktop["Exec"])
    check_equal("the entry names the icon", desktop["Icon"], ID)

    description = top / f"share/metainfo/{ID}.metainfo.xml"
    verdict = run("appstreamcli", "validate", "--no-net", description)
    check("appstreamcli accepts the description", verdict.returncode == 0, verdict.stdout + verdict.stderr)
    root = xml.parse(description).getroot()
    check_equal("the description leads to the entry", root.findtext("launchable"), entry.name)
    check_equal("the description tells the version", [release.get("version") for release in root.iter("release")],
                [version()])
    for path in ("summary", "description/p", "description/ul/li"):
        languages = [node.get(LANGUAGE) for node in root.findall(path)]
        check(f"each {path} is there in English and Japanese",
              languages and languages == [None, "ja"] * (len(languages) // 2), str(languages))

    # The released version has one date, whoever tells it.
    dates = {root.find("releases/release").get("date")}
    month = dict(zip("Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split(), range(1, 13)))
    changelog = (build / "packaging/debian/changelog").read_text(encoding="utf-8")
    day, name, year = re.search(r"^ -- .*  \w+, (\d+) (\w+) (\d+)", changelog, re.MULTILINE).groups()
    check_equal("the description and the Debian changelog tell the same date", dates,
                {f"{year}-{month[name]:02}-{int(day):02}"})

    icons = top / "share/icons/hicolor"
    for size in SIZES:
        data = (icons / f"{size}x{size}/apps/{ID}.png").read_bytes()
        check_equal(f"the icon of {size} pixels has them", png_size(data), (size, size))
    drawing = xml.parse(icons / f"scalable/apps/{ID}.svg").getroot()
    check_equal("the drawing is a square", drawing.get("viewBox"), "0 0 128 128")
    check("the drawing has the colour of the app",
          "#0e6973" in {node.get("fill") for node in drawing.iter()})

kept = source / "packaging/app/icons"
pictures = icns_pictures((kept / "Tarnwell.icns").read_bytes())
check_equal("macOS gets pictures of all sizes, those for fine screens too",
            {name: png_size(data)[0] for name, data in pictures.items()},
            {"icp4": 16, "icp5": 32, "ic07": 128, "ic08": 256, "ic09": 512,
             "ic11": 32, "ic12": 64, "ic13": 256, "ic14": 512})
for name, data in pictures.items():
    check_equal(f"{name} is the picture of its size", data == (kept / f"{png_size(data)[0]}.png").read_bytes(), True)

information = plistlib.loads((build / "packaging/app/Info.plist").read_bytes())
check_equal("the bundle for macOS has the app's name and version",
            {key: information[key] for key in ("CFBundleIdentifier", "CFBundleName", "CFBundleExecutable",
                                               "CFBundleIconFile", "CFBundleShortVersionString", "CFBundleVersion")},
            {"CFBundleIdentifier": ID, "CFBundleName": "Tarnwell", "CFBundleExecutable": "Tarnwell",
             "CFBundleIconFile": "Tarnwell.icns", "CFBundleShortVersionString": version(),
             "CFBundleVersion": version()})
check_equal("the bundle for macOS names the languages", information["CFBundleLocalizations"], ["en", "ja"])
finish()
