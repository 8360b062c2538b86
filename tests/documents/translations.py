"""translations.py SRC LUPDATE: every text of the app is translated, and every translation belongs to a text.

Asks lupdate for the texts of the sources and compares. A translation is complete: not marked unfinished, with all
plural forms of its language, the same placeholders, and a letter to reach it by where the English text has one.
"""

import collections
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

FORMS = {"en": 2, "ja": 1}  # plural forms of each language (Unicode CLDR, Language Plural Rules)


def messages(path):
    """Maps (context, text, comment) to the message; and the keys that occur again."""
    found = {}
    again = []
    for context in xml.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            comment = message.findtext("comment") or ""
            key = context.findtext("name"), message.findtext("source"), comment
            if key in found:
                again.append(key)
            found[key] = message
    return found, again


def placeholders(text):
    return collections.Counter(re.findall(r"%L?(?:\d+|n)", text))


def faults_of(message, language):
    translation = message.find("translation")
    if translation.get("type"):
        return [translation.get("type")]
    source = message.findtext("source")
    is_plural = message.get("numerus") == "yes"
    forms = [form.text or "" for form in translation.iter("numerusform")] if is_plural else [translation.text or ""]
    faults = []
    if is_plural and len(forms) != FORMS[language]:
        faults.append(f"{len(forms)} plural forms")
    for form in forms:
        if not form.strip():
            faults.append("empty")
        # The singular of a language may do without the number.
        elif placeholders(form) - placeholders(source) or (placeholders(source) - placeholders(form)).keys() - {"%n", "%Ln"}:
            faults.append("other placeholders")
        if ("&" in source.replace("&&", "")) != ("&" in form.replace("&&", "")) and "<" not in source:
            faults.append("a letter to reach it by in one language only")
    return faults


def main(source, lupdate):
    wrong = []
    count = 0
    with tempfile.TemporaryDirectory() as directory:
        for path in sorted((source / "App" / "Translations").glob("app_*.ts")):
            language = path.stem.removeprefix("app_")
            fresh = pathlib.Path(directory, path.name)
            shutil.copy(path, fresh)
            only = ["-pluralonly"] if language == "en" else []
            subprocess.run([lupdate, source / "App", "-I", source, "-ts", fresh, "-target-language", language, *only,
                            "-locations", "none", "-no-obsolete"], check=True, stdout=subprocess.DEVNULL)
            kept, again = messages(path)
            needed, _ = messages(fresh)
            wrong += [f"{path.name}: {key} is there twice" for key in again]
            wrong += [f"{path.name}: {key} is not in the file" for key in needed.keys() - kept.keys()]
            wrong += [f"{path.name}: {key} belongs to no text any more" for key in kept.keys() - needed.keys()]
            for key, message in kept.items():
                count += 1
                wrong += [f"{path.name}: {key}: {fault}" for fault in faults_of(message, language)]
    for line in wrong:
        print(line)
    print(f"{count} translations, {len(wrong)} faults")
    return bool(wrong) or not count


sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2]))
