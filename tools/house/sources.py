"""Files of the tree, and C++ text with what is no code blanked out."""

import os
import re

CPP = (".h", ".hpp", ".cpp", ".cc")
HEADERS = (".h", ".hpp")
_SKIPPED_FOLDERS = {"build", "__pycache__", "node_modules"}


def repository_files(root):
    """Paths relative to `root` with forward slashes, sorted. Hidden folders and build trees
    (whatever their name: they hold a CMakeCache.txt) are left out."""
    found = []
    for folder, names, files in os.walk(root):
        names[:] = sorted(
            n for n in names
            if n not in _SKIPPED_FOLDERS
            and (not n.startswith(".") or n == ".ci")
            and not os.path.exists(os.path.join(folder, n, "CMakeCache.txt")))
        for name in files:
            if name != ".git":
                found.append(os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/"))
    return sorted(found)


def read_text(root, path):
    """Text of a file, or None when it is binary."""
    with open(os.path.join(root, path), "rb") as file:
        data = file.read()
    if b"\0" in data:
        return None
    return data.decode("utf-8", errors="surrogateescape")


_NOT_CODE = re.compile(
    r'//(?:[^\\\n]|\\.|\\\n)*'                       # line comment, with continued lines
    r'|/\*.*?(?:\*/|\Z)'                             # block comment
    r'|(?:\b(?:u8|u|U|L))?R"(?P<tag>[^\s()\\]{0,16})\(.*?\)(?P=tag)"'  # raw text
    r'|"(?:[^"\\\n]|\\.)*"'                          # text
    r"|(?<![0-9A-Za-z_])(?:u8|u|U|L)?'(?:[^'\\\n]|\\.)+'",  # character, but not 1'000
    re.S)


def _blank(text):
    return re.sub(r"[^\n]", " ", text)


def without_comments(text):
    """The same text, line by line, with comments blanked and literals kept."""
    return _NOT_CODE.sub(
        lambda m: _blank(m.group()) if m.group().startswith(("//", "/*")) else m.group(), text)


def code_only(text):
    """The same text, line by line, with comments and the insides of literals blanked. A literal
    keeps its first and last character, so that it still counts as an operand."""
    def replace(match):
        found = match.group()
        if found.startswith(("//", "/*")):
            return _blank(found)
        return '"' + _blank(found[1:-1]) + '"'
    return _NOT_CODE.sub(replace, text)


def line_of(text, offset):
    return text.count("\n", 0, offset) + 1
