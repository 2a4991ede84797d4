#!/usr/bin/env python3
"""test_render_icons.py: breaks one thing after the other in a copy of the pictures, and fails unless
`render-icons --check` says so each time."""
import importlib.machinery
import importlib.util
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
ICONS = "src/resources/icons"
KCALC = f"{ICONS}/applications/kcalc"


def load(path):
    loader = importlib.machinery.SourceFileLoader("render_icons", str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("render_icons", loader))
    loader.exec_module(module)
    return module


sys.dont_write_bytecode = True
TOOL = load(ROOT / "tools/render-icons")


def replace(path, old, new):
    text = path.read_text()
    assert old in text, f"{path} has no {old}"
    path.write_text(text.replace(old, new, 1))


def change_byte(path):
    data = bytearray(path.read_bytes())
    data[-20] ^= 1
    path.write_bytes(data)


def swap(root, one, other):
    first, second = (root / one).read_bytes(), (root / other).read_bytes()
    (root / one).write_bytes(second)
    (root / other).write_bytes(first)


def list_anew(root):
    """What stands in the list is what there is, as if it had been rendered so."""
    (root / ICONS / "rendered.txt").write_text("\n".join(TOOL.rendered(root / ICONS)) + "\n")


def listed(change):
    def whole(root):
        change(root)
        list_anew(root)

    return whole


def draw(element):
    return listed(lambda root: replace(root / f"{KCALC}.svg", "</svg>", f"{element}</svg>"))


# What goes wrong, and what is to be said.
BREAKAGES = {
    "a drawing was changed, its picture was not":
        (lambda root: replace(root / f"{KCALC}.svg", "#e4572e", "#2aa7b8"), "kcalc.png: not of its drawing"),
    "a picture was changed by hand":
        (lambda root: change_byte(root / f"{KCALC}.png"), "kcalc.png: not of its drawing"),
    "a picture is missing":
        (lambda root: (root / f"{KCALC}.png").unlink(), "kcalc.png: not of its drawing"),
    "a drawing is missing":
        (lambda root: (root / f"{KCALC}.svg").unlink(), "kcalc.png: has no drawing"),
    "two pictures are swapped":
        (lambda root: swap(root, f"{KCALC}.png", f"{ICONS}/applications/kmail.png"), "kmail.png: not of its drawing"),
    "the program's icon is an old one":
        (lambda root: replace(root / ICONS / "quillet.svg", "#f2e3c6", "#ffffff"), "quillet.ico: not of its drawing"),
    "the list is missing":
        (lambda root: (root / ICONS / "rendered.txt").unlink(), "run make icons"),
    "a picture has another folder's size":
        (listed(lambda root: shutil.copy(root / ICONS / "64x64/back.png", root / ICONS / "32x32/back.png")),
         "32x32/back.png: is not a picture of 32 pixels"),
    "the program's icon has lost a size":
        (listed(lambda root: (root / ICONS / "quillet.ico").write_bytes(b"\0\0\1\0\1\0" + bytes([16]) * 16)),
         "quillet.ico: has not the sizes"),
    "a picture is not compiled in":
        (lambda root: replace(root / "src/resources/icons.qrc",
                              '    <file alias="applications/kcalc.png">icons/applications/kcalc.png</file>\n', ""),
         "icons.qrc: applications/kcalc.png is missing"),
    "a picture is compiled in under another name":
        (lambda root: replace(root / "src/resources/icons.qrc", 'alias="applications/kcalc.png"', 'alias="kcalc.png"'),
         "is listed as kcalc.png"),
    "what is compiled in is not there":
        (lambda root: replace(root / "src/resources/icons.qrc", "</qresource>",
                              '<file alias="x.png">icons/x.png</file></qresource>'),
         "icons.qrc: there is no picture x.png"),
    "the code names a picture that is not there":
        (lambda root: replace(root / "src/shell/tabbar_pages.cpp", '"config.png"', '"settings.png"'),
         "src/shell/tabbar_pages.cpp: there is no picture settings.png"),
    "the code names a picture of another folder":
        (lambda root: replace(root / "src/shell/tabbar_pages.cpp", '"config.png"', '"list-view.png"'),
         "src/shell/tabbar_pages.cpp: there is no picture list-view.png"),
    "the code names a path that is not there":
        (lambda root: replace(root / "src/session/initscreen.cpp", ":/icons/64x64/logo.png", ":/icons/48x48/logo.png"),
         "there is no picture :/icons/48x48/logo.png"),
    "the code names a folder that is not there":
        (lambda root: replace(root / "src/files/filesystemform.cpp", ":/icons/48x48/%1.png", ":/icons/40x40/%1.png"),
         "there is no picture :/icons/40x40/%1.png"),
    "the catalogue names a picture that is not there":
        (lambda root: replace(root / "src/resources/mime/tables/applications.table", "kcalc.png", "sums.png"),
         "there is no picture applications/sums.png"),
    "a group has no picture":
        (lambda root: replace(root / "src/resources/mime/tables/groups.table", "\ngames ", "\nsports "),
         "there is no picture groups/sports.png"),
    "a drawing has a colour of its own":
        (draw('<circle cx="32" cy="32" r="9" fill="#ff0000"/>'), "kcalc.svg: the colour #ff0000"),
    "a drawing has three tones":
        (draw('<circle cx="32" cy="32" r="9" fill="#5b9a5b"/>'), "kcalc.svg: has more than two tones: ink, aqua, leaf"),
    "a drawing has a thin line":
        (draw('<path d="M8 8 H56" fill="none" stroke="#22313a" stroke-width="2"/>'), "thinner than 3 units"),
    "a drawing has a line of no stated width":
        (draw('<path d="M8 8 H56" fill="none" stroke="#22313a"/>'), "thinner than 3 units"),
    "a drawing has letters":
        (draw('<text x="8" y="8">K</text>'), "kcalc.svg: has a <text>"),
    "a drawing has a filter":
        (draw('<path d="M8 8 H56" fill="none" filter="url(#x)"/>'), "has the attribute filter"),
    "a drawing is large":
        (draw('<path d="M8 8 H56" fill="none"/>' * 80), "more than 2500 bytes"),
    "a drawing is on another grid":
        (listed(lambda root: replace(root / f"{KCALC}.svg", "0 0 64 64", "0 0 48 48")), "not on the grid"),
}


def copy_of_all(folder):
    root = Path(folder) / "root"
    for part in ("src/resources", "src/files", "src/shell", "src/session"):
        shutil.copytree(ROOT / part, root / part)
    return root


def program(root):
    """The exit code of the program itself."""
    return subprocess.run([ROOT / "tools/render-icons", "--check", "--root", root], capture_output=True).returncode


def main():
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        root = copy_of_all(folder)
        faults += TOOL.check(root, root / ICONS)
        if program(root) != 0:
            faults.append("the program does not accept a copy as it is")
        (root / f"{KCALC}.png").unlink()
        if program(root) != 1:
            faults.append("the program accepts pictures of which one is missing")
    for breakage, (do, expected) in BREAKAGES.items():
        with tempfile.TemporaryDirectory() as folder:
            root = copy_of_all(folder)
            do(root)
            told = TOOL.check(root, root / ICONS)
            if not any(expected in fault for fault in told):
                faults.append(f"{breakage}: not told, but {told}")
    for fault in faults:
        print(fault, file=sys.stderr)
    print(f"{len(BREAKAGES)} breakages, {len(faults)} faults")
    sys.exit(1 if faults else 0)


main()
