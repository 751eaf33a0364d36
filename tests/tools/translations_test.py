#!/usr/bin/python3
"""Proves that every text of the program is there in every language."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import skippable

PROJECT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TRANSLATIONS = os.path.join(PROJECT, "resources", "translations")
TRANSLATE = os.path.join(PROJECT, "tools", "translate")
LUPDATE = "/usr/lib/qt6/bin/lupdate"
ADVICE = "run tools/translate and translate what is unfinished in resources/translations"


def files():
    return sorted(name for name in os.listdir(TRANSLATIONS) if name.endswith(".ts"))


def messages(path):
    """{(context, source, comment): (type, translations)} of a file."""
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            forms = translation.findall("numerusform") or [translation]
            text = message.findtext
            key = (context.findtext("name"), text("source"), text("comment"))
            found[key] = (translation.get("type"), [form.text or "" for form in forms])
    return found


def differences(path, current):
    """What a file lacks, has too much or left open, compared with one that is in step."""
    has, needs = messages(path), messages(current)
    return [
        *(f"missing: {key}" for key in sorted(needs.keys() - has.keys(), key=str)),
        *(f"gone from the sources: {key}" for key in sorted(has.keys() - needs.keys(), key=str)),
        *(f"{kind}: {key}" for key, (kind, _) in has.items() if kind),
    ]


class TranslationsAreComplete(unittest.TestCase):
    def setUp(self):
        if not os.access(LUPDATE, os.X_OK):
            self.skipTest("needs lupdate")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        for name in files():
            shutil.copy(os.path.join(TRANSLATIONS, name), self.folder)

    def translate(self):
        result = subprocess.run(
            [TRANSLATE, self.folder], capture_output=True, text=True, check=False
        )
        # A complaint is about a text whose class could not be found out: it would stay English.
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def test_no_text_is_missing_or_unfinished(self):
        self.assertEqual(self.translate(), "0 texts to translate\n", ADVICE)
        for name in files():
            found = differences(
                os.path.join(TRANSLATIONS, name), os.path.join(self.folder, name)
            )
            self.assertEqual(found, [], f"{name}: {ADVICE}")

    def test_a_text_of_a_source_and_one_of_an_interface_file_would_be_missed(self):
        for source in ("Scanning…", "Scan Folder…"):
            name = files()[0]
            path = os.path.join(self.folder, name)
            shutil.copy(os.path.join(TRANSLATIONS, name), path)
            tree = ElementTree.parse(path)
            removed = []
            for context in tree.getroot().iter("context"):
                for message in context.findall("message"):
                    if message.findtext("source") == source:
                        context.remove(message)
                        removed.append(context.findtext("name"))
            self.assertEqual(len(removed), 1, source)
            tree.write(path, encoding="utf-8")
            lacking = os.path.join(self.folder, "lacking.xml")
            shutil.copy(path, lacking)
            self.assertEqual(self.translate(), "1 texts to translate\n")
            found = differences(lacking, path)
            self.assertEqual(found, [f"missing: {(removed[0], source, None)}"])


class TranslationsFit(unittest.TestCase):
    def each(self):
        for name in files():
            for key, (_, forms) in messages(os.path.join(TRANSLATIONS, name)).items():
                for form in forms:
                    yield f"{name}: {key}", key[1], form

    def test_there_are_languages(self):
        self.assertGreaterEqual(set(files()), {"tessaly_de.ts", "tessaly_fr.ts"})

    def test_every_language_is_built(self):
        with open(os.path.join(PROJECT, "resources", "CMakeLists.txt"), encoding="utf-8") as file:
            built = re.search(r"foreach\(language IN ITEMS ([\w ]+)\)", file.read()).group(1)
        self.assertEqual([f"tessaly_{language}.ts" for language in built.split()], files())

    def test_places_for_values_are_kept(self):
        for where, source, form in self.each():
            places = r"%(?:L?\d|L?n)"
            self.assertEqual(
                sorted(re.findall(places, form)), sorted(re.findall(places, source)), where
            )

    def test_letters_to_press_are_kept(self):
        for where, source, form in self.each():
            letters = r"&(?!&)\S"
            self.assertEqual(
                len(re.findall(letters, form)), len(re.findall(letters, source)), where
            )

    def test_lines_and_ellipses_are_kept(self):
        for where, source, form in self.each():
            self.assertEqual(form.count("\n"), source.count("\n"), where)
            self.assertEqual(form.endswith("…"), source.endswith("…"), where)
            self.assertEqual(form, form.strip(), where)


if __name__ == "__main__":
    skippable.main()
