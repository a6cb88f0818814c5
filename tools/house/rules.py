"""House rules that a machine can read, one function per rule. CONTRIBUTING.md has the reasons.

A rule takes a SourceFile and yields (line, rule, message). ERRORS fail the check, WARNINGS are
printed for a reader to judge.
"""

import re

from house import functions, layers, sources

MAX_FILE_LINES = 600
MAX_HEADER_LINES = 300
MAX_FUNCTION_LINES = 80
USUAL_FUNCTION_LINES = 40
USUAL_HEADER_INCLUDES = 7
USUAL_SOURCE_INCLUDES = 15

_TEXT = (".py", ".sh", ".cmake", ".txt", ".md", ".json", ".yml", ".yaml", ".in")
_NON_ASCII_FOLDERS = ("samples/", "resources/", "tests/", "docs/")
# These files spell out what they forbid, or are made of data.
_DATA = (".stp", ".step", ".p21")


class SourceFile:
    """One text file with the forms of it that rules look at."""

    def __init__(self, path, text):
        self.path = path
        self.text = text
        self.lines = text.split("\n")
        if self.lines and self.lines[-1] == "":
            self.lines.pop()
        self.is_cpp = path.endswith(sources.CPP)
        self.is_header = path.endswith(sources.HEADERS)
        self.is_text = self.is_cpp or path.endswith(_TEXT) or "." not in path.rsplit("/", 1)[-1]
        self.code = sources.code_only(text) if self.is_cpp else text
        self.folder = layers.folder_of(path)

    def matches(self, pattern, text=None):
        text = self.text if text is None else text
        for match in pattern.finditer(text):
            yield sources.line_of(text, match.start()), match.group()


def file_length(file):
    limit = MAX_HEADER_LINES if file.is_header else MAX_FILE_LINES
    checked = file.is_cpp or file.path.endswith((".py", ".cmake")) or file.path.startswith("tools/")
    if checked and len(file.lines) > limit:
        yield limit + 1, "file-length", f"{len(file.lines)} lines, the limit is {limit}"


def function_length(file):
    if not file.is_cpp:
        return
    try:
        found = functions.find_functions(file.text)
    except ValueError as problem:
        yield 1, "function-length", f"cannot be measured: {problem}"
        return
    for function in found:
        if function.lines > MAX_FUNCTION_LINES:
            yield (function.first_line, "function-length",
                   f"{function.name} has {function.lines} lines, the limit is {MAX_FUNCTION_LINES}")


# Spelled in pieces, so that this file does not hold what it looks for.
_OUTSIDE_PAPERS = re.compile(
    r"\bspe" r"c(?:ification)?s?\b|\bPar" r"ts? \d+\.\d+|\bst" r"eps? \d+ of (?:the|a|Par" r"t)\b"
    r"|\bissu" r"e #?\d+|/wor" r"k/", re.I)
_UNFINISHED = re.compile(r"\b(?:TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK)\b|\bDISA" r"BLED_\w+")


def outside_papers(file):
    for line, found in file.matches(_OUTSIDE_PAPERS):
        yield line, "outside-paper", f'"{found}": a reader has nothing but this repository'


def unfinished(file):
    for line, found in file.matches(_UNFINISHED):
        yield line, "unfinished", f'"{found}": finish it or leave it out'


def ascii_only(file):
    if file.path.startswith(_NON_ASCII_FOLDERS) or file.path.endswith(".md"):
        return
    for number, line in enumerate(file.lines, 1):
        if not line.isascii():
            yield number, "ascii", "a character outside ASCII; write it as an escape"


def whitespace(file):
    for number, line in enumerate(file.lines, 1):
        if line.endswith((" ", "\t", "\r")):
            yield number, "whitespace", "blanks or a CR at the end of the line"
    if file.text and not file.text.endswith("\n"):
        yield len(file.lines), "whitespace", "no line feed at the end of the file"


def pragma_once(file):
    if file.is_header and not re.search(r"^#pragma once$", file.code, re.M):
        yield 1, "pragma-once", "a header without #pragma once"


_THROW = re.compile(r"\bthrow\b")


def no_throw(file):
    if file.is_cpp and file.folder in layers.PRODUCT:
        for line, _ in file.matches(_THROW, file.code):
            yield line, "throw", "product code reports failure by its result"


_LOCALE_CALLS = re.compile(
    r"\b(?:setlocale|localeconv|strtod|strtof|strtold|wcstod|wcstof|atof|_wtof|stod|stof|stold"
    r"|towlower|towupper|iswalpha|iswalnum|iswupper|iswlower|wcscoll|strcoll|wcstombs|mbstowcs"
    r"|wcrtomb|mbrtowc|strftime|wcsftime|localtime|mktime|put_time)\s*\(|\bstd::locale::global\b")
_FLOAT_FORMAT = re.compile(r'printf\s*\([^;]*?"[^"\n]*%[-+ #0-9.*]*[lL]?[aAeEfFgG]')


def locale_free(file):
    """D11: no result depends on the process locale or the time zone."""
    if not file.is_cpp or file.folder in layers.FREE:
        return
    for line, found in file.matches(_LOCALE_CALLS, file.code):
        yield line, "locale", f"{found.rstrip('( ')} depends on the process locale or time zone"
    for line, _ in file.matches(_FLOAT_FORMAT, sources.without_comments(file.text)):
        yield line, "locale", "a number printed in the process locale; use std::to_chars"


_USING_NAMESPACE = re.compile(r"^[ \t]*using namespace (?!std::(?:string_|chrono_)?literals)[\w:]+", re.M)


def no_using_in_headers(file):
    if file.is_header:
        for line, found in file.matches(_USING_NAMESPACE, file.code):
            yield line, "using-namespace", f"{found.strip()} in a header"


_GLOB = re.compile(r"\bfile\s*\(\s*GLOB", re.I)


def no_glob(file):
    if file.path.endswith((".cmake", "CMakeLists.txt")):
        for line, _ in file.matches(_GLOB):
            yield line, "glob", "source lists are written out"


_INCLUDE = re.compile(r"^[ \t]*#[ \t]*include\b", re.M)


def include_count(file):
    if not file.is_cpp:
        return
    count = len(_INCLUDE.findall(sources.without_comments(file.text)))
    limit = USUAL_HEADER_INCLUDES if file.is_header else USUAL_SOURCE_INCLUDES
    if count > limit:
        yield 1, "include-count", f"{count} includes, usual are up to {limit}"


def long_function(file):
    if not file.is_cpp or file.folder in layers.FREE:
        return
    try:
        found = functions.find_functions(file.text)
    except ValueError:
        return
    for function in found:
        if USUAL_FUNCTION_LINES < function.lines <= MAX_FUNCTION_LINES:
            yield (function.first_line, "long-function",
                   f"{function.name} has {function.lines} lines, usual are up to "
                   f"{USUAL_FUNCTION_LINES}")


ERRORS = (file_length, function_length, outside_papers, unfinished, ascii_only, whitespace,
          pragma_once, no_throw, locale_free, no_using_in_headers, no_glob)
WARNINGS = (include_count, long_function)


def is_checked(path):
    return not path.endswith(_DATA) and not path.startswith("tests/golden/")
